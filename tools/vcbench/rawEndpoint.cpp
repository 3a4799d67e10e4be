// The raw endpoint: ViewControl interactions whose one parameter holds `size` bytes
// that look like a control PDU (its 12-byte header, kind 202), carrying vcbench's own
// message in the first bytes of the body. Only the standard API is used (joining and
// leaving through the toolkit's helpers, which know both APIs' ways). In object mode the
// stream and the pings are updates of the State attribute of `objects` Entity instances,
// the value laid out alike; the other messages stay interactions.
#include "dtRtiSession.h"

#include <RTI/Exception.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "endpoint.h"
#include "wire.h"

namespace vcbench {

namespace {

std::string narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

// Object mode's model: the interaction the messages travel in, and an entity whose state
// is one opaque attribute, as an entity-state record would be. A 1516-2010 RTI takes it
// as a module over its standard one, so the roots are only named there.
#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
const char* const kObjectModel = R"(<?xml version="1.0"?>
<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010">
  <modelIdentification><name>VcbenchObjects</name><type>FOM</type><version>1.0</version></modelIdentification>
  <objects>
    <objectClass>
      <name>HLAobjectRoot</name>
      <objectClass>
        <name>Entity</name><sharing>PublishSubscribe</sharing>
        <attribute>
          <name>State</name><dataType>HLAopaqueData</dataType><sharing>PublishSubscribe</sharing>
          <transportation>HLAreliable</transportation><order>Receive</order>
        </attribute>
      </objectClass>
    </objectClass>
  </objects>
  <interactions>
    <interactionClass>
      <name>HLAinteractionRoot</name>
      <interactionClass>
        <name>ViewControl</name><sharing>PublishSubscribe</sharing>
        <transportation>HLAreliable</transportation><order>Receive</order>
        <parameter><name>ViewControlPdu</name><dataType>HLAopaqueData</dataType></parameter>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)";
#else
const char* const kObjectModel = R"(<?xml version="1.0"?>
<objectModel DTDversion="1516.2" name="VcbenchObjects" type="FOM" version="1.0">
  <objects>
    <objectClass name="HLAobjectRoot" sharing="Neither">
      <attribute name="HLAprivilegeToDeleteObject" dataType="HLAtoken" updateType="Static"
                 updateCondition="NA" ownership="DivestAcquire" sharing="PublishSubscribe"
                 dimensions="NA" transportation="HLAreliable" order="TimeStamp"/>
      <objectClass name="Entity" sharing="PublishSubscribe">
        <attribute name="State" dataType="HLAopaqueData" sharing="PublishSubscribe"
                   transportation="HLAreliable" order="Receive"/>
      </objectClass>
    </objectClass>
  </objects>
  <interactions>
    <interactionClass name="HLAinteractionRoot" sharing="Neither" transportation="HLAreliable"
                      order="TimeStamp">
      <interactionClass name="ViewControl" sharing="PublishSubscribe" transportation="HLAreliable"
                        order="Receive">
        <parameter name="ViewControlPdu" dataType="HLAopaqueData"/>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)";
#endif

// The object model file for a run: the one asked for, or object mode's own, written for
// the join and removed after it.
class ModelFile {
 public:
  explicit ModelFile(const Settings& settings) : path_(settings.fdd) {
    if (settings.objects == 0 || !path_.empty()) return;
    const char* tmp = std::getenv("TMPDIR");
    path_ = std::string(tmp && *tmp ? tmp : "/tmp") + "/vcbench-objects-" +
            std::to_string(::getpid()) + ".xml";
    std::ofstream(path_, std::ios::binary) << kObjectModel;
    owned_ = true;
  }
  ~ModelFile() {
    if (owned_) std::remove(path_.c_str());
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  bool owned_ = false;
};

class RawEndpoint : public Endpoint, public DtRtiReceiver {
 public:
  RawEndpoint(const Settings& settings, Handler& handler)
      : handler_(handler),
        federation_(settings.federation),
        data_(wire::buffer(static_cast<size_t>(settings.size))),
        ping_(wire::buffer(static_cast<size_t>(settings.size))),
        control_(wire::buffer(wire::kMessageSize)) {
    try {
      ModelFile model(settings);
      rti_ = DtRtiJoin(settings.federation, settings.federate, model.path(), *this);
      cls_ = rti_->getInteractionClassHandle(L"ViewControl");
      param_ = rti_->getParameterHandle(cls_, L"ViewControlPdu");
      rti_->publishInteractionClass(cls_);
      rti_->subscribeInteractionClass(cls_, true);
      if (settings.objects > 0) {
        entity_ = rti_->getObjectClassHandle(L"Entity");
        state_ = rti_->getAttributeHandle(entity_, L"State");
        dtrti::AttributeHandleSet attributes;
        attributes.insert(state_);
        rti_->publishObjectClassAttributes(entity_, attributes);
        rti_->subscribeObjectClassAttributes(entity_, attributes);
        instances_.resize(static_cast<size_t>(settings.objects));
      }
    } catch (const dtrti::Exception& e) {
      throw std::runtime_error("cannot join " + settings.federation + ": " + narrow(e.what()));
    }
    wire::mark(data_.data(), Kind::Data, 0, 0);
  }

  // The last to leave destroys the federation, through its own ambassador: a second one
  // made just for that, while this one's connection is still closing, can hang some RTIs
  // (OpenRTI's local node is shutting down as the new one asks to connect through it).
  ~RawEndpoint() override {
    try {
      DtRtiLeave(*rti_, federation_);
    } catch (const dtrti::Exception&) {
      // Gone already: nothing to leave.
    }
  }

  // Only the sender registers: the receiver's instances would be streams of their own.
  void begin() override {
    guarded([&] {
      for (auto& instance : instances_) instance = rti_->registerObjectInstance(entity_);
    });
  }

  void sendData(std::uint64_t seq) override {
    wire::setA(data_.data(), seq);
    if (!instances_.empty())
      guarded([&] { update(instances_[seq % instances_.size()], data_); });
    else
      guarded([&] { sendBuffer(dataValues_, data_); });
  }

  void send(Kind kind, std::uint64_t a, std::uint64_t b) override {
    if (kind == Kind::Ping) {
      wire::mark(ping_.data(), kind, a, b);
      if (!instances_.empty())
        guarded([&] { update(instances_[0], ping_); });
      else
        guarded([&] { sendBuffer(pingValues_, ping_); });
    } else {
      wire::mark(control_.data(), kind, a, b);
      guarded([&] { sendBuffer(controlValues_, control_); });
    }
  }

  // Waiting takes the single-callback form, which returns with the first callback, and
  // what else has come is taken at once after it.
  void poll(double waitSeconds) override {
    guarded([&] {
      if (waitSeconds > 0 && !rti_->evokeCallback(waitSeconds)) return;
      rti_->evokeMultipleCallbacks(0.0, 0.001);
    });
  }

  void interactionReceived(dtrti::InteractionClassHandle,
                           dtrti::ParameterHandleValueMap const& values) override {
    auto it = values.find(param_);
    if (it == values.end()) return;
    Message m;
    if (wire::read(it->second.data(), it->second.size(), m)) handler_.onMessage(m);
  }

  using DtRtiReceiver::reflectAttributeValues;
#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
  void reflectAttributeValues(dtrti::ObjectInstanceHandle,
                              dtrti::AttributeHandleValueMap const& values,
                              dtrti::VariableLengthData const&, dtrti::OrderType,
                              dtrti::TransportationType, dtrti::SupplementalReflectInfo) override {
    reflected(values);
  }
#else
  void reflectAttributeValues(dtrti::ObjectInstanceHandle,
                              dtrti::AttributeHandleValueMap const& values,
                              dtrti::VariableLengthData const&, dtrti::OrderType,
                              dtrti::TransportationType) override {
    reflected(values);
  }
#endif

 private:
  // The value points at our buffer as it is now. It is pointed again before every send:
  // an RTI may take a copy of the bytes when it is given the pointer rather than when it
  // sends, and then a pointer set once would send the first contents for ever.
  void sendBuffer(dtrti::ParameterHandleValueMap& values, std::vector<unsigned char>& buffer) {
    values[param_].setDataPointer(buffer.data(), static_cast<unsigned long>(buffer.size()));
    rti_->sendInteraction(cls_, values, tag_);
  }

  void update(dtrti::ObjectInstanceHandle instance, std::vector<unsigned char>& buffer) {
    stateValues_[state_].setDataPointer(buffer.data(), static_cast<unsigned long>(buffer.size()));
    rti_->updateAttributeValues(instance, stateValues_, tag_);
  }

  void reflected(dtrti::AttributeHandleValueMap const& values) {
    auto it = values.find(state_);
    if (it == values.end()) return;
    Message m;
    if (wire::read(it->second.data(), it->second.size(), m)) handler_.onMessage(m);
  }

  // The runs report std::exception; an RTI exception would get past them and end the
  // process in std::terminate when the hub goes away.
  template <typename Call>
  void guarded(Call call) {
    try {
      call();
    } catch (const dtrti::Exception& e) {
      throw std::runtime_error("connection to " + federation_ + " lost: " + narrow(e.what()));
    }
  }

  Handler& handler_;
  std::string federation_;
  std::unique_ptr<dtrti::RTIambassador> rti_;
  dtrti::InteractionClassHandle cls_;
  dtrti::ParameterHandle param_;
  std::vector<unsigned char> data_, ping_, control_;
  dtrti::ParameterHandleValueMap dataValues_, pingValues_, controlValues_;
  dtrti::VariableLengthData tag_;
  dtrti::ObjectClassHandle entity_;
  dtrti::AttributeHandle state_;
  std::vector<dtrti::ObjectInstanceHandle> instances_;
  dtrti::AttributeHandleValueMap stateValues_;
};

}  // namespace

std::unique_ptr<Endpoint> makeRawEndpoint(const Settings& settings, Handler& handler) {
  return std::make_unique<RawEndpoint>(settings, handler);
}

}  // namespace vcbench
