#include "dtRtiSession.h"

#include <RTI/Exception.h>
#include <RTI/RTIambassadorFactory.h>

#include <algorithm>
#include <vector>

#include "wideText.h"

#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
#define DT_RTI_EVOLVED 1
#else
#define DT_RTI_EVOLVED 0
#endif

DtRtiReceiver::DtRtiReceiver() = default;
DtRtiReceiver::~DtRtiReceiver() = default;

void DtRtiReceiver::discoverObjectInstance(dtrti::ObjectInstanceHandle object,
                                           dtrti::ObjectClassHandle cls, std::wstring const& name) {
  objectDiscovered(object, cls, name);
}

#if DT_RTI_EVOLVED
void DtRtiReceiver::receiveInteraction(dtrti::InteractionClassHandle cls,
                                       dtrti::ParameterHandleValueMap const& values,
                                       dtrti::VariableLengthData const&, dtrti::OrderType,
                                       dtrti::TransportationType, dtrti::SupplementalReceiveInfo) {
  interactionReceived(cls, values);
}
void DtRtiReceiver::discoverObjectInstance(dtrti::ObjectInstanceHandle object,
                                           dtrti::ObjectClassHandle cls, std::wstring const& name,
                                           dtrti::FederateHandle) {
  objectDiscovered(object, cls, name);
}
void DtRtiReceiver::reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                                           dtrti::AttributeHandleValueMap const& values,
                                           dtrti::VariableLengthData const&, dtrti::OrderType,
                                           dtrti::TransportationType,
                                           dtrti::SupplementalReflectInfo) {
  objectReflected(object, values);
}
void DtRtiReceiver::removeObjectInstance(dtrti::ObjectInstanceHandle object,
                                         dtrti::VariableLengthData const&, dtrti::OrderType,
                                         dtrti::SupplementalRemoveInfo) {
  objectRemoved(object);
}
#else
void DtRtiReceiver::receiveInteraction(dtrti::InteractionClassHandle cls,
                                       dtrti::ParameterHandleValueMap const& values,
                                       dtrti::VariableLengthData const&, dtrti::OrderType,
                                       dtrti::TransportationType) {
  interactionReceived(cls, values);
}
void DtRtiReceiver::receiveInteraction(dtrti::InteractionClassHandle cls,
                                       dtrti::ParameterHandleValueMap const& values,
                                       dtrti::VariableLengthData const&, dtrti::OrderType,
                                       dtrti::TransportationType, dtrti::RegionHandleSet const&) {
  interactionReceived(cls, values);
}
void DtRtiReceiver::reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                                           dtrti::AttributeHandleValueMap const& values,
                                           dtrti::VariableLengthData const&, dtrti::OrderType,
                                           dtrti::TransportationType) {
  objectReflected(object, values);
}
void DtRtiReceiver::reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                                           dtrti::AttributeHandleValueMap const& values,
                                           dtrti::VariableLengthData const&, dtrti::OrderType,
                                           dtrti::TransportationType,
                                           dtrti::RegionHandleSet const&) {
  objectReflected(object, values);
}
void DtRtiReceiver::removeObjectInstance(dtrti::ObjectInstanceHandle object,
                                         dtrti::VariableLengthData const&, dtrti::OrderType) {
  objectRemoved(object);
}
#endif

const char* DtRtiApiName() {
  return DT_RTI_EVOLVED ? "IEEE 1516-2010" : "IEEE 1516-2000";
}

namespace {
// True when this call made the federation, false when it was there already. The object
// model is one file (1516-2000) or a list of modules (1516-2010).
template <typename Fom>
bool createUnlessThere(dtrti::RTIambassador& rti, const std::wstring& federation, const Fom& fom) {
  try {
    rti.createFederationExecution(federation, fom);
    return true;
  } catch (const dtrti::FederationExecutionAlreadyExists&) {
    // Joining an existing federation is the common case.
    return false;
  }
}

// A federation found while creating may be gone by the time we join: its last member
// left and destroyed it in between. Creating it again then makes it anew. Each round
// lost needs another federate to leave in exactly that moment; even federates that do
// nothing but come and go lose one round in a few, so twenty never run out in practice
// and still end a loop that something else keeps going.
constexpr int kJoinRounds = 20;

// Creates the federation unless it is there and joins it through `join(made)`; true when
// this call made it.
template <typename Fom, typename Join>
bool createAndJoin(dtrti::RTIambassador& rti, const std::wstring& federation, const Fom& fom,
                   Join join) {
  for (int round = 1;; ++round) {
    const bool made = createUnlessThere(rti, federation, fom);
    try {
      join(made);
      return made;
    } catch (const dtrti::FederationExecutionDoesNotExist&) {
      if (round >= kJoinRounds) throw;
    }
  }
}
}  // namespace

#if DT_RTI_EVOLVED

std::unique_ptr<dtrti::RTIambassador> DtRtiJoin(const std::string& execName,
                                                const std::string& federateType,
                                                const std::string& fomFile,
                                                dtrti::FederateAmbassador& ambassador,
                                                bool* created) {
  if (created) *created = false;
  const DtRtiFederationUrl url = DtRtiFederationUrl::parse(execName);
  const std::wstring federation = dtwide::widen(url.federationName);
  // Several modules are named in one text, separated by commas: the published RPR modules
  // and ours, say, each a file of its own as the standard defines them.
  std::vector<std::wstring> fom;
  for (std::size_t from = 0; from <= fomFile.size();) {
    const std::size_t comma = std::min(fomFile.find(',', from), fomFile.size());
    if (comma > from) fom.push_back(dtwide::widen(fomFile.substr(from, comma - from)));
    from = comma + 1;
  }
  dtrti::RTIambassadorFactory factory;
  std::unique_ptr<dtrti::RTIambassador> rti(factory.createRTIambassador());
  // The toolkit evokes callbacks itself, inside the application's calls.
  rti->connect(ambassador, dtrti::HLA_EVOKED, dtwide::widen(url.connectDesignator));
  try {
    const bool made = createAndJoin(*rti, federation, fom, [&](bool madeNow) {
      // The creator's model already holds our modules; anyone else brings them along.
      // Joining by type only lets several federates share a name, as the 1516-2000 API does.
      rti->joinFederationExecution(dtwide::widen(federateType), federation,
                                   madeNow ? std::vector<std::wstring>() : fom);
    });
    if (created) *created = made;
  } catch (...) {
    try {
      rti->disconnect();
    } catch (const dtrti::Exception&) {
      // The failure being thrown says more than this one.
    }
    throw;
  }
  return rti;
}

void DtRtiLeave(dtrti::RTIambassador& rti, const std::string& execName) {
  rti.resignFederationExecution(dtrti::NO_ACTION);
  try {
    rti.destroyFederationExecution(
        dtwide::widen(DtRtiFederationUrl::parse(execName).federationName));
  } catch (const dtrti::Exception&) {
    // Others are still joined: the federation stays theirs.
  }
  try {
    rti.disconnect();
  } catch (const dtrti::Exception&) {
    // Resigned already: nothing of ours is left behind.
  }
}

#else

std::unique_ptr<dtrti::RTIambassador> DtRtiJoin(const std::string& execName,
                                                const std::string& federateType,
                                                const std::string& fomFile,
                                                dtrti::FederateAmbassador& ambassador,
                                                bool* created) {
  if (created) *created = false;
  dtrti::RTIambassadorFactory factory;
  std::vector<std::wstring> noArgs;  // the factory takes them by non-const reference
  std::unique_ptr<dtrti::RTIambassador> rti(factory.createRTIambassador(noArgs));
  const std::wstring federation = dtwide::widen(execName);
  const bool made = createAndJoin(*rti, federation, dtwide::widen(fomFile), [&](bool) {
    rti->joinFederationExecution(dtwide::widen(federateType), federation, ambassador);
  });
  if (created) *created = made;
  return rti;
}

void DtRtiLeave(dtrti::RTIambassador& rti, const std::string& execName) {
  rti.resignFederationExecution(dtrti::NO_ACTION);
  try {
    rti.destroyFederationExecution(dtwide::widen(execName));
  } catch (const dtrti::Exception&) {
    // Others are still joined: the federation stays theirs.
  }
}

#endif
