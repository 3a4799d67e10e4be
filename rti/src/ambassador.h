// The embedded RTI's ambassador: federation management, interaction handles, publish /
// subscribe with class inheritance, send, and callback delivery on evoke.
#ifndef VCRTI_AMBASSADOR_H
#define VCRTI_AMBASSADOR_H

#include "link.h"
#include "unsupported_services.h"

#include <vector>

namespace vcrti {

class Ambassador final : public UnsupportedServices {
 public:
  Ambassador() = default;
  ~Ambassador() override;

  void createFederationExecution(std::wstring const& federationExecutionName,
                                 std::wstring const& fullPathNameToTheFDDfile,
                                 std::wstring const& logicalTimeImplementationName = L"") override;
  void destroyFederationExecution(std::wstring const& federationExecutionName) override;
  FederateHandle joinFederationExecution(std::wstring const& federateType,
                                         std::wstring const& federationExecutionName,
                                         FederateAmbassador& federateAmbassador) override;
  void resignFederationExecution(ResignAction resignAction) override;

  void publishInteractionClass(InteractionClassHandle theInteraction) override;
  void unpublishInteractionClass(InteractionClassHandle theInteraction) override;
  void subscribeInteractionClass(InteractionClassHandle theClass, bool active) override;
  void unsubscribeInteractionClass(InteractionClassHandle theClass) override;
  // The time-stamped form stays the refusing one.
  using UnsupportedServices::sendInteraction;
  void sendInteraction(InteractionClassHandle theInteraction,
                       ParameterHandleValueMap const& theParameterValues,
                       VariableLengthData const& theUserSuppliedTag) override;

  ObjectClassHandle getObjectClassHandle(std::wstring const& theName) override;
  std::wstring getObjectClassName(ObjectClassHandle theHandle) override;
  AttributeHandle getAttributeHandle(ObjectClassHandle whichClass,
                                     std::wstring const& theAttributeName) override;
  std::wstring getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) override;
  InteractionClassHandle getInteractionClassHandle(std::wstring const& theName) override;
  std::wstring getInteractionClassName(InteractionClassHandle theHandle) override;
  ParameterHandle getParameterHandle(InteractionClassHandle whichClass,
                                     std::wstring const& theName) override;
  std::wstring getParameterName(InteractionClassHandle whichClass,
                                ParameterHandle theHandle) override;
  TransportationType getTransportationType(std::wstring const& transportationName) override;
  std::wstring getTransportationName(TransportationType transportationType) override;
  OrderType getOrderType(std::wstring const& orderName) override;
  std::wstring getOrderName(OrderType orderType) override;
  unsigned long normalizeFederateHandle(FederateHandle theFederateHandle) override;
  unsigned long normalizeServiceGroup(ServiceGroupIndicator theServiceGroup) override;

  bool evokeCallback(double approximateMinimumTimeInSeconds) override;
  bool evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                              double approximateMaximumTimeInSeconds) override;
  void enableCallbacks() override;
  void disableCallbacks() override;

  FederateHandle decodeFederateHandle(VariableLengthData const& encodedValue) const override;
  ObjectClassHandle decodeObjectClassHandle(VariableLengthData const& encodedValue) const override;
  InteractionClassHandle decodeInteractionClassHandle(
      VariableLengthData const& encodedValue) const override;
  ObjectInstanceHandle decodeObjectInstanceHandle(
      VariableLengthData const& encodedValue) const override;
  AttributeHandle decodeAttributeHandle(VariableLengthData const& encodedValue) const override;
  ParameterHandle decodeParameterHandle(VariableLengthData const& encodedValue) const override;
  DimensionHandle decodeDimensionHandle(VariableLengthData const& encodedValue) const override;
  MessageRetractionHandle decodeMessageRetractionHandle(
      VariableLengthData const& encodedValue) const override;
  RegionHandle decodeRegionHandle(VariableLengthData const& encodedValue) const override;

 private:
  void requireJoined(const wchar_t* operation) const;
  std::uint32_t interactionClass(InteractionClassHandle h, const wchar_t* operation) const;
  std::uint32_t objectClass(ObjectClassHandle h) const;
  // Delivers the next pending interaction, if any; false when there is none.
  bool deliverOne();
  bool pending() const { return deliverPos_ < deliver_.size(); }
  // Fetches into the delivery buffer, waiting up to `seconds`; false when nothing came.
  bool refill(double seconds);
  bool evoke(double minSeconds, double maxSeconds, bool single);

  std::unique_ptr<Link> link_;
  std::shared_ptr<const FddModel> model_;
  FederateAmbassador* federate_ = nullptr;
  FederateHandle self_;
  std::vector<bool> published_;
  std::vector<bool> subscribed_;
  bool callbacksEnabled_ = true;
  bool inEvoke_ = false;

  // Received frames awaiting delivery; values handed to callbacks point into it.
  ByteBuffer deliver_;
  std::size_t deliverPos_ = 0;
  // Reused from one callback to the next so that a steady stream of one class does not
  // allocate: the map's nodes stay, only the values are re-pointed.
  ParameterHandleValueMap rxParams_;
  VariableLengthData rxTag_;
};

}  // namespace vcrti

#endif
