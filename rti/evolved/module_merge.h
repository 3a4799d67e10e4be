// The object model of a 1516-2010 federation: its FOM modules and the MIM read in order
// and merged into the one model the federate and federation cores work with. Until the
// module reader of the core merges by itself, the facade does it here.
#ifndef VCRTI_MODULE_MERGE_H
#define VCRTI_MODULE_MERGE_H

#include "fdd_model.h"

#include <string>
#include <vector>

namespace vcrti {

// What the 1516-2010 API calls a conflicting module.
class ModuleConflict : public std::exception {
 public:
  explicit ModuleConflict(std::wstring message) : message_(std::move(message)) {}
  const std::wstring& message() const noexcept { return message_; }
  const char* what() const noexcept override { return "inconsistent FOM modules"; }

 private:
  std::wstring message_;
};

// The standard MIM's part that this RTI works with: the two root classes and the
// object root's HLAprivilegeToDeleteObject.
FddModel standardMim();

// `base` (the MIM) followed by every module, each read from its file. A class that several
// modules declare is one class; at most one of them may give it members, unless they give
// the same. Throws RtiError (CouldNotOpenFDD, ErrorReadingFDD) for a module that cannot be
// read and ModuleConflict, naming the class and the two modules, for one that disagrees.
FddModel mergeModules(FddModel base, const std::wstring& baseName,
                      const std::vector<std::wstring>& modules);

// Checks that the federation's model already holds every class of the modules, with the
// members they declare. Throws like mergeModules.
void checkModulesKnown(const FddModel& federation, const std::vector<std::wstring>& modules);

}  // namespace vcrti

#endif
