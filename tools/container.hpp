// Files as the world keeps them: PEM blocks and DER objects, any number of them, one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "input.hpp"
#include "ketra/asn1/fault.hpp"
#include "signed_objects.hpp"

namespace tool {

// A stretch of a file, copied out of it.
struct Stretch {
  enum class Form {
    Der,      // what should be an object
    Pem,      // the base64 of one
    Note,     // input that is passed over rightly: `text` tells
    Fault,    // input that cannot be read: `text` tells
    Nothing,  // a file in which there is neither PEM nor DER: `text` tells
  };
  Form form = Form::Nothing;
  Kind kind = Kind::none;  // none: nothing but the encoding can tell
  std::string text = {};
  std::string label = {};  // of a PEM block
};

// The encoding in a stretch that is Pem, or what is wrong with it.
ketra::Result<ketra::Octets> decodePem(const Stretch &stretch);
// A label to show.
std::string quote(std::string_view label);

class Splitter {
 public:
  // An object of more than `most` octets, its text in PEM, is a Fault; it is not read.
  Splitter(Input &input, uint64_t most);
  // The stretches of the file, one with each call; nothing at its end.
  std::optional<Stretch> next();

 private:
  bool skipSpace();
  bool startsDer();
  bool findPem();
  Stretch takeDer();
  Stretch takePem();
  Stretch passOver(uint64_t length);
  void skip(uint64_t size);
  std::optional<Stretch> end();

  Input &input_;
  uint64_t most_;
  std::size_t withoutPem_ = 0;  // in so many octets of the window no PEM begins
  std::size_t passedOver_ = 0;  // octets since the last stretch
  enum class Last { None, Der, Pem } last_ = Last::None;
};

}  // namespace tool
