// Federations that live inside one process (thread://Name): every ambassador of the
// process that names the federation shares it; frames go straight into the receivers'
// queues, no sockets.
#ifndef VCRTI_LOCAL_LINK_H
#define VCRTI_LOCAL_LINK_H

#include "link.h"

#include <string>
#include <vector>

namespace vcrti {

// Each throws RtiError for the failure (already exists, does not exist, federates joined).
void createLocalFederation(const std::wstring& name, std::shared_ptr<const FddModel> model);
void destroyLocalFederation(const std::wstring& name);
// Merges the modules (none for a federate of the 2000 API) into the federation's model
// first: InconsistentFDD when they conflict with it.
std::unique_ptr<Link> joinLocalFederation(const std::wstring& name,
                                          const std::vector<FddModel>& modules);

}  // namespace vcrti

#endif
