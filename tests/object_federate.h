#pragma once
// A federate driven by text commands, for the object-management tests. A test drives one
// in its own process, and tests/peers/om_peer.cpp wraps the same one in a process of its
// own, so each case is written once and runs in one process and across processes. Written
// against the standard 1516 API only, so it runs on any RTI. Instances are named by their
// federation-wide names, classes and attributes by their names, values in hex: what two
// processes say about one instance compares as text.
//
// Commands, one line each; the answer is "OK", "OK <detail>" or "EXC <exception class>":
//   publish CLASS ATTR...           unpublish CLASS [ATTR...]
//   subscribe CLASS ATTR...         subscribe-passive CLASS ATTR...
//   unsubscribe CLASS [ATTR...]     reserve NAME
//   register CLASS [NAME]           -> OK <the instance's name>
//   update NAME ATTR=HEX... [tag=HEX]
//   request NAME ATTR...            request-class CLASS ATTR...
//   delete NAME [tag=HEX]           local-delete NAME
//   class-name CLASS                -> OK <getObjectClassName(getObjectClassHandle(CLASS))>
//   attribute-name CLASS ATTR       -> OK <name of that attribute's handle>
//   instance NAME                   -> OK <getObjectInstanceName(getObjectInstanceHandle(NAME))>
//   known-class NAME                -> OK <name of the instance's known class>
//   invalid-class-name              getObjectClassName of a handle the RTI never made
//   fence N                         sends the interaction Fence(N); see below
//   resign ACTION                   ACTION as the API names it, e.g. DELETE_OBJECTS
// An attribute written CLASS:ATTR is looked up in CLASS instead of the command's class.
// Events, in the order the callbacks came:
//   RESERVED NAME | RESERVE-FAILED NAME | DISCOVER NAME CLASS | REMOVE NAME tag=HEX
//   REFLECT NAME ATTR=HEX... tag=HEX    (attributes by name, in name order)
//   PROVIDE NAME ATTR...                (answered with the values last sent, after the evoke)
//   FENCE N
// Each federate publishes and subscribes the Fence interaction when it joins. One
// federate's messages arrive in the order it sent them, so once a receiver has seen
// FENCE N, anything the sender did before the fence has arrived too: that is how a test
// shows that something did not happen without waiting for it.
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <cxxabi.h>

#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace omtest {

inline std::wstring widen(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

inline std::string narrowed(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c > 0 && c < 128 ? static_cast<char>(c) : '?';
  return out;
}

inline std::string toHex(const void* data, std::size_t size) {
  static const char digits[] = "0123456789abcdef";
  const auto* p = static_cast<const unsigned char*>(data);
  std::string out;
  for (std::size_t i = 0; i < size; ++i) {
    out += digits[p[i] >> 4];
    out += digits[p[i] & 15];
  }
  return out;
}

// Odd lengths and other characters are a fault of the test itself, so they throw.
inline std::vector<unsigned char> fromHex(const std::string& hex) {
  auto nibble = [](char c) -> int {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    throw std::invalid_argument("bad hex digit");
  };
  if (hex.size() % 2) throw std::invalid_argument("odd hex length");
  std::vector<unsigned char> out;
  for (std::size_t i = 0; i < hex.size(); i += 2)
    out.push_back(static_cast<unsigned char>(nibble(hex[i]) << 4 | nibble(hex[i + 1])));
  return out;
}

// The exception's class without its namespace, as both RTIs' classes are named alike.
inline std::string exceptionName(const rti1516::Exception& e) {
  int status = 0;
  char* d = abi::__cxa_demangle(typeid(e).name(), nullptr, nullptr, &status);
  std::string name = status == 0 && d ? d : typeid(e).name();
  std::free(d);
  const auto colon = name.rfind("::");
  return colon == std::string::npos ? name : name.substr(colon + 2);
}

inline bool resignAction(const std::string& name, rti1516::ResignAction& action) {
  static const std::pair<const char*, rti1516::ResignAction> actions[] = {
      {"UNCONDITIONALLY_DIVEST_ATTRIBUTES", rti1516::UNCONDITIONALLY_DIVEST_ATTRIBUTES},
      {"DELETE_OBJECTS", rti1516::DELETE_OBJECTS},
      {"CANCEL_PENDING_OWNERSHIP_ACQUISITIONS", rti1516::CANCEL_PENDING_OWNERSHIP_ACQUISITIONS},
      {"DELETE_OBJECTS_THEN_DIVEST", rti1516::DELETE_OBJECTS_THEN_DIVEST},
      {"CANCEL_THEN_DELETE_THEN_DIVEST", rti1516::CANCEL_THEN_DELETE_THEN_DIVEST},
      {"NO_ACTION", rti1516::NO_ACTION}};
  for (const auto& [n, a] : actions)
    if (name == n) {
      action = a;
      return true;
    }
  return false;
}

class ObjectFederate : public rti1516::NullFederateAmbassador {
 public:
  // Joins the federation `url` as `federateName`, creating it from `fdd` unless it is there.
  // Throws what the RTI throws.
  ObjectFederate(const std::string& url, const std::string& fdd, const std::string& federateName)
      : url_(widen(url)) {
    rti1516::RTIambassadorFactory factory;
    std::vector<std::wstring> noArgs;
    rti_ = factory.createRTIambassador(noArgs);
    try {
      rti_->createFederationExecution(url_, widen(fdd));
    } catch (const rti1516::FederationExecutionAlreadyExists&) {
    }
    rti_->joinFederationExecution(widen(federateName), url_, *this);
    joined_ = true;
    fence_ = rti_->getInteractionClassHandle(L"Fence");
    fenceValue_ = rti_->getParameterHandle(fence_, L"Value");
    rti_->publishInteractionClass(fence_);
    rti_->subscribeInteractionClass(fence_);
  }

  ~ObjectFederate() override {
    if (!joined_) return;
    try {
      rti_->resignFederationExecution(rti1516::DELETE_OBJECTS);
      rti_->destroyFederationExecution(url_);
    } catch (const rti1516::Exception&) {
      // Others still joined, or the federation already gone: theirs to clean up.
    }
  }

  // Carries out one command line and returns its answer.
  std::string execute(const std::string& line) {
    std::istringstream in(line);
    std::string verb;
    in >> verb;
    std::vector<std::string> args;
    for (std::string a; in >> a;) args.push_back(a);
    try {
      return "OK" + run(verb, args);
    } catch (const rti1516::RTIinternalError& e) {
      // No case expects this one: its text tells what went wrong.
      return "EXC RTIinternalError: " + narrowed(e.what());
    } catch (const rti1516::Exception& e) {
      return "EXC " + exceptionName(e);
    }
  }

  // Delivers what the RTI has for this federate, without waiting, then answers the
  // provide requests that came with it. Returns the events that arrived.
  std::vector<std::string> poll(double seconds = 0.0) {
    if (!joined_) return {};
    rti_->evokeMultipleCallbacks(seconds, seconds);
    auto provides = std::move(provides_);
    provides_.clear();
    for (const auto& [object, attributes] : provides) provide(object, attributes);
    std::vector<std::string> out(events_.begin(), events_.end());
    events_.clear();
    return out;
  }

  // ---------------------------------------------------------------- callbacks
  void objectInstanceNameReservationSucceeded(std::wstring const& name) override {
    events_.push_back("RESERVED " + narrowed(name));
  }
  void objectInstanceNameReservationFailed(std::wstring const& name) override {
    events_.push_back("RESERVE-FAILED " + narrowed(name));
  }
  void discoverObjectInstance(rti1516::ObjectInstanceHandle object, rti1516::ObjectClassHandle cls,
                              std::wstring const& name) override {
    names_[object] = narrowed(name);
    handles_[narrowed(name)] = object;
    events_.push_back("DISCOVER " + narrowed(name) + " " + narrowed(rti_->getObjectClassName(cls)));
  }
  void reflectAttributeValues(rti1516::ObjectInstanceHandle object,
                              rti1516::AttributeHandleValueMap const& values,
                              rti1516::VariableLengthData const& tag, rti1516::OrderType,
                              rti1516::TransportationType) override {
    const auto cls = rti_->getKnownObjectClassHandle(object);
    std::map<std::string, std::string> byName;
    for (const auto& [h, v] : values)
      byName[narrowed(rti_->getAttributeName(cls, h))] = toHex(v.data(), v.size());
    std::string e = "REFLECT " + nameOf(object);
    for (const auto& [n, v] : byName) e += " " + n + "=" + v;
    events_.push_back(e + " tag=" + toHex(tag.data(), tag.size()));
  }
  void removeObjectInstance(rti1516::ObjectInstanceHandle object,
                            rti1516::VariableLengthData const& tag, rti1516::OrderType) override {
    events_.push_back("REMOVE " + nameOf(object) + " tag=" + toHex(tag.data(), tag.size()));
  }
  void provideAttributeValueUpdate(rti1516::ObjectInstanceHandle object,
                                   rti1516::AttributeHandleSet const& attributes,
                                   rti1516::VariableLengthData const&) override {
    const auto cls = rti_->getKnownObjectClassHandle(object);
    std::set<std::string> byName;
    for (const auto& h : attributes) byName.insert(narrowed(rti_->getAttributeName(cls, h)));
    std::string e = "PROVIDE " + nameOf(object);
    for (const auto& n : byName) e += " " + n;
    events_.push_back(e);
    provides_.emplace_back(object, attributes);
  }
  void receiveInteraction(rti1516::InteractionClassHandle,
                          rti1516::ParameterHandleValueMap const& values,
                          rti1516::VariableLengthData const&, rti1516::OrderType,
                          rti1516::TransportationType) override {
    const auto v = values.find(fenceValue_);
    if (v == values.end()) return;
    const auto* p = static_cast<const char*>(v->second.data());
    events_.push_back("FENCE " + std::string(p, p + v->second.size()));
  }

 private:
  std::string run(const std::string& verb, const std::vector<std::string>& a) {
    using namespace rti1516;
    auto need = [&](std::size_t n) {
      if (a.size() < n)
        throw RTIinternalError(L"test command " + widen(verb) + L" lacks arguments");
    };
    if (verb == "publish" || verb == "subscribe" || verb == "subscribe-passive") {
      need(1);
      const auto cls = rti_->getObjectClassHandle(widen(a[0]));
      const auto set = attributeSet(cls, a, 1);
      if (verb == "publish")
        rti_->publishObjectClassAttributes(cls, set);
      else
        rti_->subscribeObjectClassAttributes(cls, set, verb == "subscribe");
      return "";
    }
    if (verb == "unpublish" || verb == "unsubscribe") {
      need(1);
      const auto cls = rti_->getObjectClassHandle(widen(a[0]));
      const bool whole = a.size() == 1;
      if (verb == "unpublish")
        whole ? rti_->unpublishObjectClass(cls)
              : rti_->unpublishObjectClassAttributes(cls, attributeSet(cls, a, 1));
      else
        whole ? rti_->unsubscribeObjectClass(cls)
              : rti_->unsubscribeObjectClassAttributes(cls, attributeSet(cls, a, 1));
      return "";
    }
    if (verb == "reserve") {
      need(1);
      rti_->reserveObjectInstanceName(widen(a[0]));
      return "";
    }
    if (verb == "register") {
      need(1);
      const auto cls = rti_->getObjectClassHandle(widen(a[0]));
      const auto object = a.size() > 1 ? rti_->registerObjectInstance(cls, widen(a[1]))
                                       : rti_->registerObjectInstance(cls);
      const std::string name = narrowed(rti_->getObjectInstanceName(object));
      names_[object] = name;
      handles_[name] = object;
      return " " + name;
    }
    if (verb == "update") {
      need(1);
      const auto object = instance(a[0]);
      const auto cls = rti_->getKnownObjectClassHandle(object);
      AttributeHandleValueMap values;
      std::vector<unsigned char> tag;
      for (std::size_t i = 1; i < a.size(); ++i) {
        const auto eq = a[i].find('=');
        const std::string key = a[i].substr(0, eq);
        const auto bytes = fromHex(eq == std::string::npos ? "" : a[i].substr(eq + 1));
        if (key == "tag") {
          tag = bytes;
          continue;
        }
        values[attribute(cls, key)] = VariableLengthData(bytes.data(), bytes.size());
      }
      rti_->updateAttributeValues(object, values, VariableLengthData(tag.data(), tag.size()));
      for (const auto& [h, v] : values) {
        const auto* p = static_cast<const unsigned char*>(v.data());
        sent_[object][h].assign(p, p + v.size());
      }
      return "";
    }
    if (verb == "request") {
      need(1);
      const auto object = instance(a[0]);
      rti_->requestAttributeValueUpdate(object,
                                        attributeSet(rti_->getKnownObjectClassHandle(object), a, 1),
                                        VariableLengthData());
      return "";
    }
    if (verb == "request-class") {
      need(1);
      const auto cls = rti_->getObjectClassHandle(widen(a[0]));
      rti_->requestAttributeValueUpdate(cls, attributeSet(cls, a, 1), VariableLengthData());
      return "";
    }
    if (verb == "delete") {
      need(1);
      std::vector<unsigned char> tag;
      if (a.size() > 1 && a[1].compare(0, 4, "tag=") == 0) tag = fromHex(a[1].substr(4));
      rti_->deleteObjectInstance(instance(a[0]), VariableLengthData(tag.data(), tag.size()));
      return "";
    }
    if (verb == "local-delete") {
      need(1);
      rti_->localDeleteObjectInstance(instance(a[0]));
      return "";
    }
    if (verb == "class-name") {
      need(1);
      return " " + narrowed(rti_->getObjectClassName(rti_->getObjectClassHandle(widen(a[0]))));
    }
    if (verb == "attribute-name") {
      need(2);
      const auto cls = rti_->getObjectClassHandle(widen(a[0]));
      return " " +
             narrowed(rti_->getAttributeName(cls, rti_->getAttributeHandle(cls, widen(a[1]))));
    }
    if (verb == "instance") {
      need(1);
      return " " +
             narrowed(rti_->getObjectInstanceName(rti_->getObjectInstanceHandle(widen(a[0]))));
    }
    if (verb == "known-class") {
      need(1);
      return " " +
             narrowed(rti_->getObjectClassName(rti_->getKnownObjectClassHandle(instance(a[0]))));
    }
    if (verb == "invalid-class-name")
      return " " + narrowed(rti_->getObjectClassName(ObjectClassHandle()));
    if (verb == "fence") {
      need(1);
      ParameterHandleValueMap values;
      values[fenceValue_] = VariableLengthData(a[0].data(), a[0].size());
      rti_->sendInteraction(fence_, values, VariableLengthData());
      return "";
    }
    if (verb == "resign") {
      need(1);
      ResignAction action;
      if (!resignAction(a[0], action)) throw RTIinternalError(L"no resign action " + widen(a[0]));
      rti_->resignFederationExecution(action);
      joined_ = false;
      return "";
    }
    throw RTIinternalError(L"no test command " + widen(verb));
  }

  rti1516::AttributeHandle attribute(rti1516::ObjectClassHandle cls, const std::string& name) {
    const auto colon = name.find(':');
    if (colon == std::string::npos) return rti_->getAttributeHandle(cls, widen(name));
    return rti_->getAttributeHandle(rti_->getObjectClassHandle(widen(name.substr(0, colon))),
                                    widen(name.substr(colon + 1)));
  }

  rti1516::AttributeHandleSet attributeSet(rti1516::ObjectClassHandle cls,
                                           const std::vector<std::string>& a, std::size_t from) {
    rti1516::AttributeHandleSet set;
    for (std::size_t i = from; i < a.size(); ++i) set.insert(attribute(cls, a[i]));
    return set;
  }

  // The handle this federate was given for NAME, kept after the instance is gone so that
  // stale handles reach the RTI; a name never seen is asked of the RTI.
  rti1516::ObjectInstanceHandle instance(const std::string& name) {
    const auto it = handles_.find(name);
    return it != handles_.end() ? it->second : rti_->getObjectInstanceHandle(widen(name));
  }

  std::string nameOf(rti1516::ObjectInstanceHandle object) const {
    const auto it = names_.find(object);
    return it == names_.end() ? "?" : it->second;
  }

  void provide(rti1516::ObjectInstanceHandle object,
               const rti1516::AttributeHandleSet& attributes) {
    rti1516::AttributeHandleValueMap values;
    for (const auto& h : attributes) {
      const auto& bytes = sent_[object][h];
      values[h] = rti1516::VariableLengthData(bytes.data(), bytes.size());
    }
    try {
      rti_->updateAttributeValues(object, values, rti1516::VariableLengthData());
    } catch (const rti1516::Exception& e) {
      events_.push_back("PROVIDE-FAILED " + exceptionName(e));
    }
  }

  std::wstring url_;
  std::unique_ptr<rti1516::RTIambassador> rti_;
  bool joined_ = false;
  rti1516::InteractionClassHandle fence_;
  rti1516::ParameterHandle fenceValue_;
  std::deque<std::string> events_;
  std::vector<std::pair<rti1516::ObjectInstanceHandle, rti1516::AttributeHandleSet>> provides_;
  std::map<rti1516::ObjectInstanceHandle, std::string> names_;
  std::map<std::string, rti1516::ObjectInstanceHandle> handles_;
  std::map<rti1516::ObjectInstanceHandle,
           std::map<rti1516::AttributeHandle, std::vector<unsigned char>>>
      sent_;
};

}  // namespace omtest
