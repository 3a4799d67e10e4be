// Bytes -> the FDD parser, as the creating federate reads an object model file. A model
// that parses is looked up by every name it declares, shared in the form the hub passes
// on, and must come back the same; merged as a module after the standard MIM, it either
// is refused or grows the MIM without moving a handle.
#include <cstdlib>
#include <string>

#include "core_types.h"
#include "fdd_parser.h"
#include "fom_modules.h"

using namespace vcrti;

namespace {

void lookUpEverything(const FddTree& tree) {
  for (std::uint32_t c = 0; c < tree.classes.size(); ++c) {
    const FddClass& cls = tree.classes[c];
    if (tree.findClass(cls.qualified) != c) std::abort();
    tree.findClass(cls.name);
    for (std::uint32_t m : cls.all) {
      const std::uint32_t found = tree.findMember(c, tree.members[m].name);
      if (found == kNoClass || !tree.memberAvailable(c, found)) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string xml(reinterpret_cast<const char*>(data), size);
  FddModel model;
  try {
    model = parseFddText(xml, L"fuzz.xml");
  } catch (const RtiError&) {
    return 0;  // refused with a reason: what the parser is for
  }
  lookUpEverything(model.interactions);
  lookUpEverything(model.objects);
  ByteBuffer blob;
  encodeFdd(model, blob);
  FddModel shared;
  std::string error;
  if (!decodeFdd(blob.data(), blob.size(), shared, error)) std::abort();
  if (shared.interactions.classes.size() != model.interactions.classes.size() ||
      shared.interactions.members.size() != model.interactions.members.size() ||
      shared.objects.classes.size() != model.objects.classes.size() ||
      shared.dataTypes.size() != model.dataTypes.size())
    std::abort();
  FddModel merged = standardMim();
  if (mergeModule(merged, model).empty()) {
    const FddModel& mim = standardMim();
    for (const FddTree FddModel::*tree : {&FddModel::interactions, &FddModel::objects})
      for (std::uint32_t c = 0; c < (mim.*tree).classes.size(); ++c)
        if ((merged.*tree).classes[c].qualified != (mim.*tree).classes[c].qualified) std::abort();
    lookUpEverything(merged.interactions);
    lookUpEverything(merged.objects);
  } else if (merged.interactions.classes.size() != standardMim().interactions.classes.size()) {
    std::abort();  // a refused module leaves the model as it was
  }
  return 0;
}
