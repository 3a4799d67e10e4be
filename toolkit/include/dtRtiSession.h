#pragma once
// What the two IEEE 1516 C++ APIs do differently, in one place: creating the RTI
// ambassador, connecting (1516-2010 only), creating and joining a federation from an
// object model, leaving it, and the shape of the federate ambassador's interaction
// callbacks. Everything else the toolkit does through dtrti (dtRti.h) is written once.
// <memory> first: some RTIs' headers use std::unique_ptr without including it.
#include <memory>
#include <string>

#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTIambassador.h>

#include "dtExport.h"
#include "dtRti.h"

/// DtRtiReceiver is a federate ambassador that hands every interaction the RTI delivers
/// (in receive order, with or without regions) to interactionReceived(), and what happens
/// to object instances to objectDiscovered(), objectReflected() and objectRemoved(),
/// whichever API's callback signatures the RTI calls it with. Other callbacks do nothing unless a
/// subclass overrides them; their signatures are the same in both APIs where the toolkit
/// uses them (name reservation).
class DT_EXPORT DtRtiReceiver : public dtrti::NullFederateAmbassador {
 public:
  DtRtiReceiver();
  ~DtRtiReceiver() override;

  virtual void interactionReceived(dtrti::InteractionClassHandle cls,
                                   const dtrti::ParameterHandleValueMap& values) = 0;
  /// Instances of subscribed object classes, in receive order, whichever API calls.
  virtual void objectDiscovered(dtrti::ObjectInstanceHandle object, dtrti::ObjectClassHandle cls,
                                const std::wstring& name) {}
  virtual void objectReflected(dtrti::ObjectInstanceHandle object,
                               const dtrti::AttributeHandleValueMap& values) {}
  virtual void objectRemoved(dtrti::ObjectInstanceHandle object) {}

  using dtrti::NullFederateAmbassador::discoverObjectInstance;
  using dtrti::NullFederateAmbassador::receiveInteraction;
  using dtrti::NullFederateAmbassador::reflectAttributeValues;
  using dtrti::NullFederateAmbassador::removeObjectInstance;
  void discoverObjectInstance(dtrti::ObjectInstanceHandle object, dtrti::ObjectClassHandle cls,
                              std::wstring const& name) override;
#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
  void discoverObjectInstance(dtrti::ObjectInstanceHandle object, dtrti::ObjectClassHandle cls,
                              std::wstring const& name, dtrti::FederateHandle producer) override;
  void reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                              dtrti::AttributeHandleValueMap const& values,
                              dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                              dtrti::TransportationType transport,
                              dtrti::SupplementalReflectInfo info) override;
  void removeObjectInstance(dtrti::ObjectInstanceHandle object,
                            dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                            dtrti::SupplementalRemoveInfo info) override;
  void receiveInteraction(dtrti::InteractionClassHandle cls,
                          dtrti::ParameterHandleValueMap const& values,
                          dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                          dtrti::TransportationType transport,
                          dtrti::SupplementalReceiveInfo info) override;
#else
  void receiveInteraction(dtrti::InteractionClassHandle cls,
                          dtrti::ParameterHandleValueMap const& values,
                          dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                          dtrti::TransportationType transport) override;
  void receiveInteraction(dtrti::InteractionClassHandle cls,
                          dtrti::ParameterHandleValueMap const& values,
                          dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                          dtrti::TransportationType transport,
                          dtrti::RegionHandleSet const& regions) override;
  void reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                              dtrti::AttributeHandleValueMap const& values,
                              dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                              dtrti::TransportationType transport) override;
  void reflectAttributeValues(dtrti::ObjectInstanceHandle object,
                              dtrti::AttributeHandleValueMap const& values,
                              dtrti::VariableLengthData const& tag, dtrti::OrderType sentOrder,
                              dtrti::TransportationType transport,
                              dtrti::RegionHandleSet const& regions) override;
  void removeObjectInstance(dtrti::ObjectInstanceHandle object,
                            dtrti::VariableLengthData const& tag,
                            dtrti::OrderType sentOrder) override;
#endif
};

/// A federation URL taken apart for an API that connects before it names the federation:
/// "rti://host:port/Name" is reached through "rti://host:port" and called "Name";
/// "thread://Name" through "thread://"; a plain "Name" through the RTI's default
/// connection (an empty designator). The federation's name is what follows the last '/'.
///
/// The checks say what is wrong with an address in the same words for every RTI, since
/// RTIs tend to answer all of these with one "connection failed".
struct DT_EXPORT DtRtiFederationUrl {
  std::string connectDesignator;
  std::string federationName;
  static DtRtiFederationUrl parse(const std::string& url);
  /// Why `url` cannot name a federation, or "" when it can: an empty name, a thread://
  /// or rti:// address without a federation name, an rti:// address without a host or
  /// with a port outside 1..65535. Schemes other than these two are left to the RTI.
  static std::string shapeProblem(const std::string& url);
  /// Why the server an rti:// address names cannot be reached, or "" when nothing is
  /// known against it: a host that does not resolve, or (when `probePort` and the
  /// address has a port) a port where nothing accepts connections. Probing connects once
  /// and closes at once, so it is meant for after the RTI has failed.
  static std::string reachProblem(const std::string& url, bool probePort);
};

/// Makes an RTI ambassador, connects it with `ambassador` for evoked callbacks (1516-2010),
/// creates the federation `execName` from the object model `fomFile` (1516-2010: one or
/// more FOM modules, separated by commas) if it does not exist
/// (then `*created` is true), and joins it as `federateType`. A 1516-2010 federate that
/// finds the federation brings the modules along as additional ones, so the RTI merges
/// them with what the federation already knows. Throws the API's exceptions; a connection
/// made before the failure is closed first.
DT_EXPORT std::unique_ptr<dtrti::RTIambassador> DtRtiJoin(const std::string& execName,
                                                          const std::string& federateType,
                                                          const std::string& fomFile,
                                                          dtrti::FederateAmbassador& ambassador,
                                                          bool* created = nullptr);

/// Resigns (throwing the API's exception when the RTI does not confirm it), then destroys
/// the federation if no one else is in it, and disconnects (1516-2010). The ambassador is
/// of no further use afterwards.
DT_EXPORT void DtRtiLeave(dtrti::RTIambassador& rti, const std::string& execName);

/// Which IEEE 1516 API this build of the toolkit speaks: "IEEE 1516-2000" or
/// "IEEE 1516-2010".
DT_EXPORT const char* DtRtiApiName();
