#pragma once
// Shared by the RTI tests: a federate that records what it receives, and helpers to
// build the object models the tests need.
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <gtest/gtest.h>

#include <unistd.h>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace rtitest {

using Bytes = std::vector<unsigned char>;

inline Bytes bytesOf(const rti1516::VariableLengthData& v) {
  const auto* p = static_cast<const unsigned char*>(v.data());
  return Bytes(p, p + v.size());
}

inline std::wstring wide(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

inline std::string narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

struct Received {
  rti1516::InteractionClassHandle cls;
  std::map<rti1516::ParameterHandle, Bytes> params;
  Bytes tag;
  rti1516::OrderType order;
  rti1516::TransportationType transport;
};

class Recorder : public rti1516::NullFederateAmbassador {
 public:
  std::vector<Received> got;
  std::function<void(const Received&)> onReceive;

  void receiveInteraction(rti1516::InteractionClassHandle cls,
                          rti1516::ParameterHandleValueMap const& values,
                          rti1516::VariableLengthData const& tag, rti1516::OrderType order,
                          rti1516::TransportationType transport) override {
    Received r{cls, {}, bytesOf(tag), order, transport};
    for (const auto& [h, v] : values) r.params[h] = bytesOf(v);
    got.push_back(std::move(r));
    if (onReceive) onReceive(got.back());
  }
};

// Evokes callbacks until `count` interactions have been recorded or the time is up.
inline bool pumpUntil(rti1516::RTIambassador& rti, const Recorder& rec, std::size_t count,
                      std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (rec.got.size() < count && std::chrono::steady_clock::now() < deadline)
    rti.evokeMultipleCallbacks(0.001, 0.05);
  return rec.got.size() >= count;
}

// A payload whose every byte depends on its position and on `seed`, with all 256 byte
// values represented, so that a shifted, truncated or mixed-up value cannot match.
inline Bytes pattern(std::size_t size, unsigned seed) {
  Bytes b(size);
  for (std::size_t i = 0; i < size; ++i)
    b[i] = static_cast<unsigned char>(i * 7 + seed * 13 + (i >> 8));
  return b;
}

inline rti1516::VariableLengthData data(const Bytes& b) {
  return rti1516::VariableLengthData(b.data(), static_cast<unsigned long>(b.size()));
}

// A file in the temporary directory, removed when the object goes.
class TempFile {
 public:
  TempFile(const std::string& stem, const std::string& content) {
    static int counter = 0;
    path_ = ::testing::TempDir() + stem + "_" + std::to_string(::getpid()) + "_" +
            std::to_string(counter++) + ".xml";
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TempFile() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }
  std::wstring wpath() const { return wide(path_); }

 private:
  std::string path_;
};

// HLAinteractionRoot > Base(p1) > Derived(p2) > Leaf(p3), plus Other(q1) beside Base.
inline std::string hierarchyFom() {
  return R"(<?xml version="1.0"?>
<objectModel DTDversion="1516.2" name="Hierarchy" type="FOM" version="1.0">
  <objects><objectClass name="HLAobjectRoot"/></objects>
  <interactions>
    <interactionClass name="HLAinteractionRoot">
      <interactionClass name="Base">
        <parameter name="p1" dataType="HLAopaqueData"/>
        <interactionClass name="Derived">
          <parameter name="p2" dataType="HLAopaqueData"/>
          <interactionClass name="Leaf">
            <parameter name="p3" dataType="HLAopaqueData"/>
          </interactionClass>
        </interactionClass>
      </interactionClass>
      <interactionClass name="Other">
        <parameter name="q1" dataType="HLAopaqueData"/>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)";
}

// A wide object model: `groups` classes under the root, each with `leaves` subclasses of
// one parameter. Big enough that work done per class and member shows.
inline std::string wideFom(int groups, int leaves) {
  std::string x = R"(<?xml version="1.0"?>
<objectModel name="Wide" type="FOM"><objects><objectClass name="HLAobjectRoot"/></objects>
<interactions><interactionClass name="HLAinteractionRoot">
)";
  for (int g = 0; g < groups; ++g) {
    x += "<interactionClass name=\"G" + std::to_string(g) + "\">";
    for (int l = 0; l < leaves; ++l)
      x += "<interactionClass name=\"L" + std::to_string(g) + "_" + std::to_string(l) +
           "\"><parameter name=\"p\" dataType=\"HLAopaqueData\"/></interactionClass>";
    x += "</interactionClass>\n";
  }
  return x + "</interactionClass></interactions></objectModel>\n";
}

inline std::unique_ptr<rti1516::RTIambassador> makeAmbassador() {
  rti1516::RTIambassadorFactory factory;
  std::vector<std::wstring> noArgs;  // the factory takes them by non-const reference
  return factory.createRTIambassador(noArgs);
}

// The test's own name, usable in a federation name.
inline std::string testName() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string n = std::string(info->test_suite_name()) + "_" + info->name();
  for (char& c : n)
    if (c == '/') c = '_';
  return n;
}

}  // namespace rtitest
