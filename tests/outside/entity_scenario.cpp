// A small federation as any application would write it: the IEEE 1516-2000 C++ API and
// nothing else of this project. A simulator federate flies two aircraft and a viewer
// federate watches them, both in this process; it prints what each side did and heard,
// in an order the program fixes, so the same story comes out on every RTI.
//
//   entity_scenario FEDERATION_URL FDD_FILE
//
// Exit status 0 when the story ran to its end, 1 when an RTI call failed or an awaited
// callback did not come within 10 seconds (the line says which).
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace rti1516;

namespace {

std::wstring wide(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

std::string narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c > 0 && c < 128 ? static_cast<char>(c) : '?';
  return out;
}

// Whether the RTI reports a class by its declared name or by its path, the story names
// it as declared.
std::string declared(const std::wstring& name) {
  const std::string n = narrow(name);
  return n.substr(n.rfind('.') + 1);
}

// Positions travel as three big-endian 64-bit floats, as HLAfloat64BE says.
VariableLengthData position(double x, double y, double z) {
  unsigned char bytes[24];
  const double v[3] = {x, y, z};
  for (int i = 0; i < 3; ++i) {
    std::uint64_t bits;
    std::memcpy(&bits, &v[i], 8);
    for (int k = 0; k < 8; ++k) bytes[i * 8 + k] = static_cast<unsigned char>(bits >> (56 - 8 * k));
  }
  return VariableLengthData(bytes, sizeof bytes);
}

std::string showPosition(const VariableLengthData& d) {
  if (d.size() != 24) return "(" + std::to_string(d.size()) + " bytes, not a position)";
  const auto* p = static_cast<const unsigned char*>(d.data());
  std::string out = "(";
  for (int i = 0; i < 3; ++i) {
    std::uint64_t bits = 0;
    for (int k = 0; k < 8; ++k) bits = bits << 8 | p[i * 8 + k];
    double v;
    std::memcpy(&v, &bits, 8);
    char text[32];
    std::snprintf(text, sizeof text, "%s%g", i ? ", " : "", v);
    out += text;
  }
  return out + ")";
}

std::string text(const VariableLengthData& d) {
  return std::string(static_cast<const char*>(d.data()), d.size());
}

VariableLengthData bytesOf(const std::string& s) {
  return VariableLengthData(s.data(), s.size());
}

struct Failed {
  std::string what;
};

class Federate : public NullFederateAmbassador {
 public:
  Federate(const std::string& role, const std::wstring& url, const std::wstring& fdd)
      : role_(role) {
    RTIambassadorFactory factory;
    std::vector<std::wstring> args;
    rti = factory.createRTIambassador(args);
    try {
      rti->createFederationExecution(url, fdd);
    } catch (const FederationExecutionAlreadyExists&) {
    }
    rti->joinFederationExecution(wide(role), url, *this);
    aircraft = rti->getObjectClassHandle(L"Aircraft");
    marking = rti->getAttributeHandle(aircraft, L"Marking");
    position = rti->getAttributeHandle(aircraft, L"Position");
    sync = rti->getInteractionClassHandle(L"Sync");
    from = rti->getParameterHandle(sync, L"From");
    rti->publishInteractionClass(sync);
    rti->subscribeInteractionClass(sync);
  }

  const std::string& role() const { return role_; }
  void say(const std::string& line) { std::printf("%s: %s\n", role_.c_str(), line.c_str()); }

  std::wstring nameOf(ObjectInstanceHandle h) {
    auto it = names.find(h);
    return it == names.end() ? L"?" : it->second;
  }

  // ---- callbacks: the viewer's story, and the simulator's answers
  void objectInstanceNameReservationSucceeded(std::wstring const& name) override {
    say("the name " + narrow(name) + " is ours");
    ++reserved;
  }
  void objectInstanceNameReservationFailed(std::wstring const& name) override {
    say("the name " + narrow(name) + " is taken");
    ++reserved;
  }
  void discoverObjectInstance(ObjectInstanceHandle h, ObjectClassHandle cls,
                              std::wstring const& name) override {
    names[h] = name;
    say("discovered " + label(name) + " as " + declared(rti->getObjectClassName(cls)));
    ++discovered;
  }
  void reflectAttributeValues(ObjectInstanceHandle h, AttributeHandleValueMap const& values,
                              VariableLengthData const& tag, OrderType,
                              TransportationType) override {
    std::string line = label(nameOf(h));
    // By name, so that the line does not depend on how the RTI numbers attributes.
    std::map<std::string, std::string> shown;
    for (const auto& [attribute, value] : values)
      shown[narrow(rti->getAttributeName(aircraft, attribute))] =
          attribute == position ? showPosition(value) : "\"" + text(value) + "\"";
    for (const auto& [name, value] : shown) line += " " + name + "=" + value;
    if (tag.size()) line += " (" + text(tag) + ")";
    say(line);
    ++reflected;
  }
  void removeObjectInstance(ObjectInstanceHandle h, VariableLengthData const& tag,
                            OrderType) override {
    say("removed " + label(nameOf(h)) + (tag.size() ? " (" + text(tag) + ")" : ""));
    ++removed;
  }
  void provideAttributeValueUpdate(ObjectInstanceHandle h, AttributeHandleSet const& asked,
                                   VariableLengthData const&) override {
    std::vector<std::string> what;
    for (const auto& a : asked) what.push_back(narrow(rti->getAttributeName(aircraft, a)));
    std::sort(what.begin(), what.end());
    std::string line = "asked for " + label(nameOf(h));
    for (const auto& w : what) line += " " + w;
    say(line);
    pendingProvide.push_back({h, asked});
  }
  void receiveInteraction(InteractionClassHandle, ParameterHandleValueMap const&,
                          VariableLengthData const&, OrderType, TransportationType) override {
    ++syncs;
  }

  // Names the RTI made up differ between RTIs: the story calls them by role.
  std::string label(const std::wstring& name) {
    auto it = labels.find(name);
    return it == labels.end() ? narrow(name) : it->second;
  }

  std::unique_ptr<RTIambassador> rti;
  ObjectClassHandle aircraft;
  AttributeHandle marking, position;
  InteractionClassHandle sync;
  ParameterHandle from;
  std::map<ObjectInstanceHandle, std::wstring> names;
  std::map<std::wstring, std::string> labels;
  std::vector<std::pair<ObjectInstanceHandle, AttributeHandleSet>> pendingProvide;
  int reserved = 0, discovered = 0, reflected = 0, removed = 0, syncs = 0;

 private:
  std::string role_;
};

// Lets the federates take their callbacks until `done`, for at most 10 seconds.
void await(std::initializer_list<Federate*> federates, const char* what,
           const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline)
      throw Failed{std::string("waited for ") + what};
    for (Federate* f : federates) f->rti->evokeMultipleCallbacks(0.0, 0.002);
  }
}

// Once `from`'s Sync reaches `to`, whatever `from` published or subscribed before it is
// known where `to` is. Some RTIs learn of subscriptions on the way, so it is repeated
// until it gets through.
void handshake(Federate& from, Federate& to) {
  const int before = to.syncs;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (to.syncs == before) {
    if (std::chrono::steady_clock::now() > deadline) throw Failed{"waited for the handshake"};
    ParameterHandleValueMap hello;
    hello[from.from] = bytesOf(from.role());
    from.rti->sendInteraction(from.sync, hello, VariableLengthData());
    for (int i = 0; i < 20 && to.syncs == before; ++i) {
      from.rti->evokeMultipleCallbacks(0.0, 0.002);
      to.rti->evokeMultipleCallbacks(0.0, 0.002);
    }
  }
}

void story(const std::string& url, const std::string& fdd) {
  Federate sim("simulator", wide(url), wide(fdd));
  Federate viewer("viewer", wide(url), wide(fdd));

  AttributeHandleSet both;
  both.insert(sim.marking);
  both.insert(sim.position);
  sim.rti->publishObjectClassAttributes(sim.aircraft, both);
  AttributeHandleSet watched;
  watched.insert(viewer.marking);
  watched.insert(viewer.position);
  viewer.rti->subscribeObjectClassAttributes(viewer.aircraft, watched);
  handshake(sim, viewer);
  handshake(viewer, sim);
  handshake(sim, viewer);
  sim.say("publishing aircraft, the viewer subscribed");

  // A name of our choosing must be reserved first; the viewer's try for it comes second.
  sim.rti->reserveObjectInstanceName(L"Eagle-1");
  await({&sim, &viewer}, "the reservation", [&] { return sim.reserved == 1; });
  viewer.rti->reserveObjectInstanceName(L"Eagle-1");
  await({&sim, &viewer}, "the second reservation", [&] { return viewer.reserved == 1; });

  const ObjectInstanceHandle eagle = sim.rti->registerObjectInstance(sim.aircraft, L"Eagle-1");
  sim.names[eagle] = L"Eagle-1";
  const ObjectInstanceHandle other = sim.rti->registerObjectInstance(sim.aircraft);
  const std::wstring otherName = sim.rti->getObjectInstanceName(other);
  sim.names[other] = otherName;
  sim.labels[otherName] = viewer.labels[otherName] = "the wingman";
  sim.say(std::string("registered Eagle-1 and the wingman, whose name the RTI gave: ") +
          (otherName.empty() || otherName == L"Eagle-1" ? "not a fresh one" : "a fresh one"));

  AttributeHandleValueMap values;
  values[sim.marking] = bytesOf("EAGLE 1");
  values[sim.position] = position(1.5, -2.25, 1000);
  sim.rti->updateAttributeValues(eagle, values, bytesOf("takeoff"));
  AttributeHandleValueMap wing;
  wing[sim.position] = position(0, 0.125, -3e6);
  sim.rti->updateAttributeValues(other, wing, VariableLengthData());
  await({&sim, &viewer}, "the first reflections", [&] { return viewer.reflected == 2; });

  // The viewer asks for what it missed; the simulator answers with the current value.
  const ObjectInstanceHandle seen = viewer.rti->getObjectInstanceHandle(L"Eagle-1");
  AttributeHandleSet ask;
  ask.insert(viewer.position);
  viewer.rti->requestAttributeValueUpdate(seen, ask, VariableLengthData());
  await({&sim, &viewer}, "the request", [&] { return !sim.pendingProvide.empty(); });
  for (const auto& [h, asked] : sim.pendingProvide) {
    AttributeHandleValueMap answer;
    for (const auto& a : asked) answer[a] = position(1.5, -2.25, 1000);
    sim.rti->updateAttributeValues(h, answer, bytesOf("as asked"));
  }
  sim.pendingProvide.clear();
  await({&sim, &viewer}, "the answer", [&] { return viewer.reflected == 3; });

  sim.rti->deleteObjectInstance(eagle, bytesOf("landed"));
  await({&sim, &viewer}, "the deletion", [&] { return viewer.removed == 1; });
  try {
    sim.rti->deleteObjectInstance(eagle, VariableLengthData());
    sim.say("deleted Eagle-1 twice");
  } catch (const ObjectInstanceNotKnown&) {
    sim.say("Eagle-1 is gone: a second delete is refused");
  }

  sim.rti->resignFederationExecution(DELETE_OBJECTS);
  sim.say("resigned, deleting what it had");
  await({&viewer}, "the resignation", [&] { return viewer.removed == 2; });
  viewer.rti->resignFederationExecution(NO_ACTION);
  viewer.say("resigned");
  viewer.rti->destroyFederationExecution(wide(url));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: entity_scenario FEDERATION_URL FDD_FILE\n");
    return 2;
  }
  try {
    story(argv[1], argv[2]);
  } catch (const Failed& f) {
    std::printf("FAILED: %s\n", f.what.c_str());
    return 1;
  } catch (const rti1516::Exception& e) {
    std::printf("FAILED: the RTI said %s\n", narrow(e.what()).c_str());
    return 1;
  }
  return 0;
}
