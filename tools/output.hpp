// How results are printed. The text form is rendered from the same JSON that the JSON form prints. All strings that
// arrive here are escaped already.
#pragma once

#include <memory>
#include <ostream>

#include "problem.hpp"

namespace tool {

// Objects one after the other, each open() list() item()... list() item()... close(). Everything is
// printed at once, so memory does not grow with the input.
class Printer {
 public:
  virtual ~Printer() = default;
  virtual void open(const Json &head) = 0;
  virtual void list(const char *name) = 0;
  virtual void item(const Json &item) = 0;
  virtual void close() = 0;
  // After an exception: closes what is open.
  virtual void giveUp(const Json &problem) = 0;
};

std::unique_ptr<Printer> makeTextPrinter(std::ostream &out);
// The members of one JSON array, from the first on; who has printed all of them prints its end.
std::unique_ptr<Printer> makeJsonPrinter(std::ostream &out, bool isFirst);

}  // namespace tool
