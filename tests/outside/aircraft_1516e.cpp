// An application of the IEEE 1516-2010 C++ API as any would be written: the standard's
// headers (encoding helpers included), the published RPR FOM modules, nothing of this
// project. A simulator federate registers an aircraft and updates its marking; an
// observer federate in the same process follows it; each prints what it did and heard.
//
//   aircraft_1516e LOCAL_SETTINGS FEDERATION MODULE...
//
// Exit status 0 when the story ran to its end, 1 when an RTI call failed or an awaited
// callback did not come within 10 seconds (the line says which).
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/encoding/BasicDataElements.h>
#include <RTI/encoding/HLAfixedArray.h>
#include <RTI/encoding/HLAfixedRecord.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace rti1516e;

namespace {

std::wstring wide(const char* s) {
  return std::wstring(s, s + std::char_traits<char>::length(s));
}

std::string narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c > 0 && c < 128 ? static_cast<char>(c) : '?';
  return out;
}

// MarkingStruct: an 8-bit encoding enumeration (1 = ASCII) and eleven octets.
VariableLengthData marking(const std::string& text) {
  HLAfixedArray data(HLAoctet(), 11);
  for (size_t i = 0; i < text.size() && i < 11; ++i)
    data.set(i, HLAoctet(static_cast<Octet>(text[i])));
  HLAfixedRecord record;
  record.appendElement(HLAoctet(1));
  record.appendElement(data);
  return record.encode();
}

std::string markingText(VariableLengthData const& bytes) {
  HLAfixedRecord record;
  record.appendElement(HLAoctet());
  record.appendElement(HLAfixedArray(HLAoctet(), 11));
  record.decode(bytes);
  const auto& data = static_cast<const HLAfixedArray&>(record.get(1));
  std::string text;
  for (size_t i = 0; i < data.size(); ++i) {
    const auto& c = static_cast<const HLAoctet&>(data.get(i));
    if (c.get() != 0) text += static_cast<char>(c.get());
  }
  return text;
}

class Observer : public NullFederateAmbassador {
 public:
  void discoverObjectInstance(ObjectInstanceHandle, ObjectClassHandle,
                              std::wstring const& name) override {
    std::printf("observer: discovered %s\n", narrow(name).c_str());
    discovered = true;
  }
  void reflectAttributeValues(ObjectInstanceHandle, AttributeHandleValueMap const& values,
                              VariableLengthData const&, OrderType, TransportationType,
                              SupplementalReflectInfo) override {
    for (const auto& entry : values)
      std::printf("observer: marking %s\n", markingText(entry.second).c_str());
    reflected = true;
  }
  void removeObjectInstance(ObjectInstanceHandle, VariableLengthData const&, OrderType,
                            SupplementalRemoveInfo) override {
    std::printf("observer: removed\n");
    removed = true;
  }
  bool discovered = false, reflected = false, removed = false;
};

class Simulator : public NullFederateAmbassador {
 public:
  void objectInstanceNameReservationSucceeded(std::wstring const& name) override {
    std::printf("simulator: reserved %s\n", narrow(name).c_str());
    reserved = true;
  }
  bool reserved = false;
};

bool await(RTIambassador& rti, const bool& flag, const char* what) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!flag) {
    if (std::chrono::steady_clock::now() > end) {
      std::printf("no %s within 10 seconds\n", what);
      return false;
    }
    rti.evokeMultipleCallbacks(0.01, 0.1);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: aircraft_1516e LOCAL_SETTINGS FEDERATION MODULE...\n");
    return 2;
  }
  const std::wstring settings = wide(argv[1]);
  const std::wstring federation = wide(argv[2]);
  std::vector<std::wstring> modules;
  for (int i = 3; i < argc; ++i) modules.push_back(wide(argv[i]));
  try {
    RTIambassadorFactory factory;
    std::unique_ptr<RTIambassador> sim = factory.createRTIambassador();
    std::unique_ptr<RTIambassador> obs = factory.createRTIambassador();
    Simulator simFed;
    Observer obsFed;
    sim->connect(simFed, HLA_EVOKED, settings);
    obs->connect(obsFed, HLA_EVOKED, settings);
    try {
      sim->createFederationExecution(federation, modules, L"HLAfloat64Time");
    } catch (const FederationExecutionAlreadyExists&) {
    }
    sim->joinFederationExecution(L"simulator", federation, modules);
    obs->joinFederationExecution(L"observer", federation, modules);

    const std::wstring cls = L"HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Aircraft";
    const ObjectClassHandle aircraft = sim->getObjectClassHandle(cls);
    const AttributeHandle mark = sim->getAttributeHandle(aircraft, L"Marking");
    AttributeHandleSet attributes;
    attributes.insert(mark);
    obs->subscribeObjectClassAttributes(obs->getObjectClassHandle(cls), attributes);
    sim->publishObjectClassAttributes(aircraft, attributes);
    sim->reserveObjectInstanceName(L"Eagle");
    if (!await(*sim, simFed.reserved, "name reservation")) return 1;
    const ObjectInstanceHandle eagle = sim->registerObjectInstance(aircraft, L"Eagle");
    AttributeHandleValueMap values;
    values[mark] = marking("EAGLE1");
    sim->updateAttributeValues(eagle, values, VariableLengthData());
    if (!await(*obs, obsFed.reflected, "reflection")) return 1;
    sim->deleteObjectInstance(eagle, VariableLengthData());
    if (!await(*obs, obsFed.removed, "removal")) return 1;

    obs->resignFederationExecution(NO_ACTION);
    sim->resignFederationExecution(NO_ACTION);
    try {
      sim->destroyFederationExecution(federation);
    } catch (const FederatesCurrentlyJoined&) {
    }
    obs->disconnect();
    sim->disconnect();
    std::printf("done\n");
    return 0;
  } catch (const Exception& e) {
    std::printf("RTI: %s\n", narrow(e.what()).c_str());
    return 1;
  }
}
