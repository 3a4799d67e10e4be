#pragma once
// A 1516-2010 federate for tests written against the 1516-2000 API: the two APIs' headers
// cannot meet in one file, so this one speaks plain types and keeps the 2010 API in
// evolved_peer.cpp. Its callbacks are evoked inside the await calls.
#include <memory>
#include <string>
#include <vector>

namespace evolvedtest {

using Bytes = std::vector<unsigned char>;

class EvolvedPeer {
 public:
  // Connects for evoked callbacks to `place` ("thread://" or "rti://host:port").
  explicit EvolvedPeer(const std::wstring& place);
  ~EvolvedPeer();

  void create(const std::wstring& federation, const std::vector<std::wstring>& modules);
  void join(const std::wstring& federation, const std::vector<std::wstring>& modules);
  void resignAndDisconnect();

  void publishAndSend(const std::wstring& cls, const std::wstring& param, const Bytes& value);
  void subscribeInteraction(const std::wstring& cls);
  // The value of `param` in the first interaction received, evoking for up to 10 s; empty
  // (and false) when none came.
  bool awaitInteraction(const std::wstring& param, Bytes& value);

  // Registers an instance named `name` of `cls` publishing `attr`, and updates it.
  void registerAndUpdate(const std::wstring& cls, const std::wstring& name,
                         const std::wstring& attr, const Bytes& value);
  void subscribeObjects(const std::wstring& cls, const std::wstring& attr);
  // The instance name and the value of the first reflection, evoking for up to 10 s.
  bool awaitReflection(std::wstring& name, Bytes& value);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace evolvedtest
