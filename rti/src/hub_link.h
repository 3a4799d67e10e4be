// Federations served by the hub daemon, reached over TCP.
#ifndef VCRTI_HUB_LINK_H
#define VCRTI_HUB_LINK_H

#include "federation_url.h"
#include "link.h"

#include <vector>

namespace vcrti {

// Each throws the API's exception for the failure; an unreachable hub is RTIinternalError.
void createHubFederation(const FederationUrl& url, const FddModel& model);
void destroyHubFederation(const FederationUrl& url);
// The modules (none for a federate of the 2000 API) are merged where the federation lives:
// InconsistentFDD when they conflict with its model.
std::unique_ptr<Link> joinHubFederation(const FederationUrl& url, const std::wstring& federateType,
                                        const std::vector<FddModel>& modules);

}  // namespace vcrti

#endif
