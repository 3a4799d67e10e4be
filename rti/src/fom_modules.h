// Federation object models made of modules: a module merged into a model appends the
// classes, members and datatypes the model lacks, so that every handle already given
// keeps its value, and completes the scaffolding classes it defines. The same code runs
// where a federation lives: in a process (thread://) and in the hub.
#ifndef VCRTI_FOM_MODULES_H
#define VCRTI_FOM_MODULES_H

#include "byte_buffer.h"
#include "fdd_model.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vcrti {

// Merges `module` (read from one file, or itself merged from several) into `model`.
// Returns an empty string, leaving `model` grown and indexed, or why the module is
// refused, leaving `model` as it was:
//  - a class that both define with other members (names, order, datatypes,
//    transportation or order) or, for interactions, another transportation or order;
//  - a datatype that both define differently;
//  - a class the module names only as scaffolding that nothing defines, or a datatype it
//    uses that neither it nor the model defines (the modules came in an order their
//    dependencies do not allow);
//  - a model that would break the limits of fdd_model.h.
// The message names the class or datatype and both modules.
std::string mergeModule(FddModel& model, const FddModel& module);

// Merges each module in order, all or none, after the standard MIM when the model was not
// made with it (a model of the 2000 format).
std::string mergeModules(FddModel& model, const std::vector<FddModel>& modules);

// The standard MIM, the first module of every federation made of modules, named
// "HLAstandardMIM": the roots as the 2000 format's management model has them, the
// management classes HLAmanager.HLAfederate and HLAmanager.HLAfederation (objects with
// their attributes; interactions to the HLAadjust, HLArequest, HLAreport and HLAservice
// groups), and the predefined datatypes those use.
const FddModel& standardMim();

// The modules a joining federate brings, as the join carries them to the hub. decodeModules
// accepts any bytes; each module is checked as decodeFdd checks a model.
bool encodeModules(const std::vector<FddModel>& modules, ByteBuffer& out);
bool decodeModules(const unsigned char* data, std::size_t size, std::vector<FddModel>& out,
                   std::string& error);

}  // namespace vcrti

#endif
