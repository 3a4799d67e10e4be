#pragma once
// Every control PDU class as a numbered maker, for targets whose input picks the class
// with its first byte, and for the seed generator that writes those inputs.
#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

#include "vistrelControl.h"

namespace pduclasses {

using Maker = std::function<DtVistrelControlPdu*()>;

// A received PDU of `command` whose bytes end right after the header: whatever is done
// to it must stay inside what the PDU owns, however short its length.
inline DtVistrelControlPdu* receivedShort(int command, bool current) {
  unsigned char bytes[152] = {6, 1, DtVistrelControlPdu::kPduKind, 129, 0, 0, 0, 0, 0, 152};
  bytes[146] = static_cast<unsigned char>(command >> 8);
  bytes[147] = static_cast<unsigned char>(command);
  return DtVistrelControlPdu::createFromBytes(bytes, sizeof bytes, current);
}

// Every class and command as an application makes them.
inline const std::vector<Maker>& fresh() {
  static const std::vector<Maker> makers = [] {
    std::vector<Maker> m;
    std::vector<int> commands;
    for (int c = 0; c <= 14; ++c) commands.push_back(c);
    for (int c = 500; c <= 512; ++c) commands.push_back(c);
    for (int c = 2510; c <= 2590; ++c) commands.push_back(c);
    for (int c : commands) {
      const auto command = static_cast<DtViewerCommand>(c);
      if (std::unique_ptr<DtVistrelControlPdu>(DtNewVistrelControlPdu(command)))
        m.push_back([command] { return DtNewVistrelControlPdu(command); });
      if (std::unique_ptr<DtVistrelControlPdu>(DtNewDrawControlPduV0(command)))
        m.push_back([command] { return DtNewDrawControlPduV0(command); });
    }
    m.push_back([] { return new DtModelessVCPdu; });
    return m;
  }();
  return makers;
}

// The fresh ones, then received ones cut short after the header.
inline const std::vector<Maker>& all() {
  static const std::vector<Maker> makers = [] {
    std::vector<Maker> m = fresh();
    for (int c : {0,  1,  2,    3,    4,    5,    6,    7,    8,    9,    10,   11,
                  12, 13, 2510, 2520, 2530, 2540, 2550, 2553, 2560, 2570, 2580, 2590})
      for (bool current : {true, false})
        m.push_back([c, current] { return receivedShort(c, current); });
    return m;
  }();
  return makers;
}

// The index of a maker whose PDUs have the class and command of `pdu`, or -1.
inline int indexOf(const DtVistrelControlPdu& pdu) {
  const std::vector<Maker>& makers = all();
  for (size_t i = 0; i < makers.size(); ++i) {
    std::unique_ptr<DtVistrelControlPdu> made(makers[i]());
    if (!made) continue;
    const DtVistrelControlPdu& m = *made;
    if (typeid(m) == typeid(pdu) && m.viewerCommand() == pdu.viewerCommand())
      return static_cast<int>(i);
  }
  return -1;
}

}  // namespace pduclasses
