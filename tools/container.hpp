// Files as the world keeps them: PEM blocks and DER objects, any number of them, one after the other.
#pragma once

#include <optional>
#include <string>

#include "ketra.hpp"
#include "signed_objects.hpp"

namespace tool {

// The octets of a file, "-" being standard input. Nothing, and the reason in `why`, when it cannot be read.
std::optional<ketra::Octets> readFile(const std::string &name, std::string &why);

class ContainerVisitor {
 public:
  virtual ~ContainerVisitor() = default;
  // One encoding that should be a certificate or CRL; `kind` is Unknown when nothing but the encoding can tell.
  virtual void object(Kind kind, ketra::View encoding) = 0;
  // Input that is passed over rightly.
  virtual void note(const std::string &text) = 0;
  // Input that cannot be read.
  virtual void fault(const std::string &text) = 0;
};

void splitContainer(ketra::View content, ContainerVisitor &visitor);

}  // namespace tool
