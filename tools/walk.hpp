// Goes through certificates, CRLs and certificate requests, their extensions and the extensions of CRL entries.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batches.hpp"
#include "ketra/objects/extensions.hpp"
#include "problem.hpp"
#include "signed_objects.hpp"

namespace tool {

struct Place {
  std::string file;    // escaped
  uint64_t index = 0;  // of the object in the file, from 1
  Kind kind = Kind::none;
  uint32_t entry = 0;  // of a CRL, from 1; 0: the object itself
};

// `facts` tell an object or entry from others.
class Visitor {
 public:
  virtual ~Visitor() = default;
  virtual void note(const std::string &file, const std::string &text) = 0;
  // A stretch of a file, an object or a CRL entry that cannot be read.
  virtual void unreadable(const Place &place, const Json &problem) = 0;
  virtual void beginObject(const Place &place, const Json &facts) = 0;
  virtual void endObject() = 0;
  // Only for entries that have extensions. Those of the CRL itself come first.
  virtual void beginEntry(const Place &place, const Json &facts) = 0;
  virtual void endEntry() = 0;
  virtual void extension(const Place &place, const ketra::Extension &extension, bool isRepeated) = 0;
  // A member of an extension list, by its number from 1, that is no extension.
  virtual void unreadableExtension(const Place &place, uint32_t number, const Json &problem) = 0;
  // An attribute of a request, by its number from 1, that is malformed.
  virtual void unreadableAttribute(const Place &place, uint32_t number, const Json &problem) = 0;
  // Nothing more comes of what was begun.
  virtual void giveUp() = 0;
};

// Returns what is to be said of pieces for which there was no memory.
std::vector<std::string> walk(const Batch &batch, Visitor &visitor);

}  // namespace tool
