// Federations served by the hub daemon, reached over TCP.
#ifndef VCRTI_HUB_LINK_H
#define VCRTI_HUB_LINK_H

#include "federation_url.h"
#include "link.h"

namespace vcrti {

// Each throws the API's exception for the failure; an unreachable hub is RTIinternalError.
void createHubFederation(const FederationUrl& url, const FddModel& model);
void destroyHubFederation(const FederationUrl& url);
std::unique_ptr<Link> joinHubFederation(const FederationUrl& url, const std::wstring& federateType);

}  // namespace vcrti

#endif
