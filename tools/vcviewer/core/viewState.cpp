#include "viewState.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "textFormat.h"
#include "viewModeFields.h"

namespace vcviewer {

namespace {

using vcmodes::Field;
using vcmodes::Kind;
using vcmodes::Mode;
using vcmodes::What;

// Where the state keeps each quantity; every mode that carries it shares the one value.
double* realOf(EyeParams& e, What what) {
  switch (what) {
    case What::Radius:
      return &e.radius;
    case What::Heading:
      return &e.heading;
    case What::BodyHeading:
      return &e.bodyHeading;
    case What::Pitch:
      return &e.pitch;
    case What::HeadingOffset:
      return &e.headingOffset;
    case What::PitchOffset:
      return &e.pitchOffset;
    case What::Roll:
      return &e.roll;
    case What::AzimuthRate:
      return &e.azimuthRate;
    case What::RadialOffset:
      return &e.radialOffset;
    default:
      return nullptr;
  }
}
DtVector64* vectorOf(EyeParams& e, What what) {
  switch (what) {
    case What::Location:
      return &e.location;
    case What::TopoUpOffset:
      return &e.topoUpOffset;
    case What::Offset:
      return &e.offset;
    case What::PivotPoint:
      return &e.pivotPoint;
    default:
      return nullptr;
  }
}
EntityRef* entityOf(EyeParams& e, What what) {
  return what == What::Attached ? &e.primary : what == What::Tracked ? &e.secondary : nullptr;
}

// A field of three numbers as the state's three values; an orientation is the heading,
// pitch and roll every mode shares, shown one by one.
struct Triple {
  std::array<double*, 3> at;
  bool angles;
};
Triple tripleOf(EyeParams& e, const Field& f) {
  if (f.what == What::Orientation) return {{&e.heading, &e.pitch, &e.roll}, true};
  DtVector64* v = vectorOf(e, f.what);
  return {{&(*v)[0], &(*v)[1], &(*v)[2]}, false};
}
const char* const kAngleNames[] = {"heading", "pitch", "roll"};

bool isTriple(Kind kind) {
  return kind == Kind::Vector32 || kind == Kind::Vector64 || kind == Kind::Angles ||
         kind == Kind::Angles64;
}
bool isEntity(Kind kind) {
  return kind == Kind::Entity || kind == Kind::Designator;
}

// The field's three numbers as the PDU carries them.
DtVector64 readTriple(const DtVistrelControlPdu& pdu, const Field& f) {
  switch (f.kind) {
    case Kind::Vector32:
      return pdu.readVector32(f.offset);
    case Kind::Angles: {
      const DtTaitBryan a = pdu.readEulerAngles(f.offset);
      return DtVector64(a.psi(), a.theta(), a.phi());
    }
    default:
      return pdu.readVector64(f.offset);
  }
}
// The entity a field names, with its marking text when the PDU has room for it: senders
// that leave the trailing marking texts off send shorter PDUs.
EntityRef readEntity(const DtVistrelControlPdu& pdu, const Mode& mode, const Field& f) {
  EntityRef ref{pdu.readDesignator(f.offset).stdString(), ""};
  if (const size_t at = vcmodes::marking(mode, f); at && pdu.length() == mode.length)
    ref.marking = pdu.readChars(at, 64).stdString();
  return ref;
}

void write(DtVistrelControlPdu& pdu, const Mode& mode, const Field& f, EyeParams& e) {
  if (isTriple(f.kind)) {
    const Triple t = tripleOf(e, f);
    const DtVector64 v(*t.at[0], *t.at[1], *t.at[2]);
    switch (f.kind) {
      case Kind::Vector32:
        pdu.writeVector32(f.offset, v);
        break;
      case Kind::Angles:
        pdu.writeEulerAngles(f.offset, DtTaitBryan(v[0], v[1], v[2]));
        break;
      default:
        pdu.writeVector64(f.offset, v);
        break;
    }
  } else if (f.kind == Kind::Real) {
    pdu.writeFloat32(f.offset, static_cast<float>(*realOf(e, f.what)));
  } else if (isEntity(f.kind)) {
    const EntityRef& ref = *entityOf(e, f.what);
    pdu.writeDesignator(f.offset, ref.id);
    if (const size_t at = vcmodes::marking(mode, f)) pdu.writeChars(at, 64, ref.marking.c_str());
  }
}

std::string entityText(const char* name, const EntityRef& e) {
  std::string text = std::string(name) + "=" + word(e.id);
  if (!e.marking.empty()) text += " " + std::string(name) + "marking=" + quoted(e.marking);
  return text;
}

std::string listText(const std::vector<std::string>& ids);

// The field's current value, as "name=value"; an orientation as its three angles.
std::string show(const Field& f, EyeParams& e, const std::vector<std::string>& group) {
  if (f.what == What::Orientation) {
    const Triple t = tripleOf(e, f);
    std::string text;
    for (int i = 0; i < 3; ++i)
      text += std::string(i ? " " : "") + kAngleNames[i] + "=" + number(*t.at[i]);
    return text;
  }
  if (isTriple(f.kind)) return std::string(f.name) + "=" + vector(*vectorOf(e, f.what));
  if (f.kind == Kind::Real) return std::string(f.name) + "=" + number(*realOf(e, f.what));
  if (isEntity(f.kind)) return entityText(f.name, *entityOf(e, f.what));
  if (f.kind == Kind::Entities) return std::string(f.name) + "=" + listText(group);
  return {};
}

// Takes what the ignore flags let through from the PDU into `eye` and says what happened.
// Vectors are taken component by component; the group's lists are edited elsewhere.
std::string merge(const DtVistrelControlPdu& pdu, const Mode& mode, const Field& f,
                  unsigned long flags, EyeParams& eye) {
  const std::string kept = std::string(f.name) + "=(kept)";
  if (isTriple(f.kind)) {
    const std::array<unsigned long, 3> bits = vcmodes::components(f.bit);
    const DtVector64 in = readTriple(pdu, f);
    const Triple t = tripleOf(eye, f);
    std::string text;
    for (int i = 0; i < 3; ++i) {
      const bool keep = (flags & bits[i]) != 0;
      if (!keep) *t.at[i] = in[i];
      const std::string value = keep ? "kept" : number(*t.at[i]);
      if (t.angles)
        text += std::string(i ? " " : "") + kAngleNames[i] + "=" + (keep ? "(kept)" : value);
      else
        text += (i ? ", " : "") + value;
    }
    if (t.angles) return text;
    if ((flags & f.bit) == f.bit) return kept;
    return std::string(f.name) + "=(" + text + ")";
  }
  if (f.bit != vcmodes::kNoBit && (flags & f.bit)) return kept;
  if (f.kind == Kind::Real) {
    *realOf(eye, f.what) = pdu.readFloat32(f.offset);
  } else if (isEntity(f.kind)) {
    *entityOf(eye, f.what) = readEntity(pdu, mode, f);
  }
  return show(f, eye, {});
}

std::string listText(const std::vector<std::string>& ids) {
  std::string text = "[";
  for (size_t i = 0; i < ids.size(); ++i) text += (i ? ", " : "") + word(ids[i]);
  return text + "]";
}

// How many 64-byte ids can follow the fixed part: a count that claims more than the PDU
// holds is cut to what is there, so a hostile count costs no time.
int fitting(int count, size_t room) {
  if (count < 0) return 0;
  return static_cast<int>(std::min(static_cast<size_t>(count), room / 64));
}

// Group and modeless PDUs edit the group alike: a remove count of -1 replaces the whole
// group, otherwise the named entities leave it; then the added ones join it, once each.
// The entities to remove, then those to add, follow the fixed part of the body.
std::string editGroup(const DtVistrelControlPdu& pdu, const Mode& mode, const Field& lists,
                      std::vector<std::string>& group) {
  const size_t fixed = static_cast<size_t>(mode.length);
  size_t whole = pdu.length() > 0 ? static_cast<size_t>(pdu.length()) : 0;
  size_t length = whole > fixed ? whole - fixed : 0;
  int removeCount = pdu.readInt32(lists.offset);
  int toRemove = removeCount == -1 ? 0 : fitting(removeCount, length);
  int toAdd = fitting(pdu.readInt32(lists.offset + 4), length - 64 * static_cast<size_t>(toRemove));
  auto entry = [&](int slot) {
    return pdu.readDesignator(fixed + 64 * static_cast<size_t>(slot)).stdString();
  };
  std::string text;
  if (removeCount == -1) {
    group.clear();
    text += "remove=all";
  } else {
    std::vector<std::string> removed;
    for (int i = 0; i < toRemove; ++i) {
      std::string id = entry(i);
      group.erase(std::remove(group.begin(), group.end(), id), group.end());
      removed.push_back(id);
    }
    text += "remove=" + listText(removed);
  }
  std::vector<std::string> added;
  for (int i = 0; i < toAdd; ++i) {
    std::string id = entry(toRemove + i);
    if (std::find(group.begin(), group.end(), id) == group.end()) group.push_back(id);
    added.push_back(id);
  }
  return text + " add=" + listText(added) + " members=" + listText(group);
}

// The rows in the order the lines give them: the entities first, then the rest as the
// body has them.
std::vector<const Field*> lineOrder(const Mode& mode) {
  std::vector<const Field*> rows;
  for (int entities = 1; entities >= 0; --entities)
    for (size_t i = 0; i < mode.count; ++i)
      if (isEntity(mode.fields[i].kind) == (entities == 1)) rows.push_back(&mode.fields[i]);
  return rows;
}

const char* directionName(int d) {
  static const char* names[] = {"LEFT", "RIGHT", "UP", "DOWN", "FORWARDS", "BACKWARDS"};
  return d >= 0 && d < 6 ? names[d] : nullptr;
}

std::string directionText(int d) {
  const char* name = directionName(d);
  return name ? name : "unknown(" + std::to_string(d) + ")";
}

constexpr double kPi = 3.14159265358979323846;

}  // namespace

std::string ViewState::apply(const DtVistrelControlPdu& pdu, double stepsize, double turnrate) {
  if (pdu.viewerCommand() == DtVcMove) {
    auto* move = dynamic_cast<const DtMoveVCPdu*>(&pdu);
    return move ? applyMove(*move, stepsize, turnrate) : std::string();
  }
  // A mode, or modeless: it names entities and edits the group in the mode in force.
  const Mode* mode = vcmodes::find(pdu);
  if (!mode || mode == &vcmodes::kMove) return {};
  if (mode != &vcmodes::kModeless) {
    mode_ = mode->command;
    wideGroup_ = mode->wide;
  }
  const unsigned long flags = pdu.ignoreFlags();
  std::string line = mode->name;
  for (const Field* f : lineOrder(*mode)) {
    if (f->kind != Kind::Entities)
      line += " " + merge(pdu, *mode, *f, flags, eye_);
    else if (f->bit != vcmodes::kNoBit && (flags & f->bit))
      line += " " + std::string(f->name) + "=(kept)";
    else
      line += " " + editGroup(pdu, *mode, *f, group_);
  }
  return line;
}

std::string ViewState::applyMove(const DtMoveVCPdu& pdu, double stepsize, double turnrate) {
  unsigned long flags = pdu.ignoreFlags();
  std::string line = "move";
  bool acted = false;
  if (pdu.reset()) {
    eye_.location = DtVector64();
    eye_.heading = eye_.pitch = eye_.roll = 0;
    line += " reset";
    acted = true;
  }
  if (!(flags & vcmodes::kStep)) {
    // Heading 0 looks north (+y) and grows clockwise, towards east (+x).
    double h = eye_.heading;
    DtVector64 forward(std::sin(h), std::cos(h), 0), right(std::cos(h), -std::sin(h), 0);
    DtVector64 step;
    switch (pdu.move()) {
      case DtMoveVCPdu::FORWARDS:
        step = forward * stepsize;
        break;
      case DtMoveVCPdu::BACKWARDS:
        step = forward * -stepsize;
        break;
      case DtMoveVCPdu::RIGHT:
        step = right * stepsize;
        break;
      case DtMoveVCPdu::LEFT:
        step = right * -stepsize;
        break;
      case DtMoveVCPdu::UP:
        step = DtVector64(0, 0, stepsize);
        break;
      case DtMoveVCPdu::DOWN:
        step = DtVector64(0, 0, -stepsize);
        break;
    }
    eye_.location = eye_.location + step;
    line += " step=" + directionText(pdu.move());
    acted = true;
  }
  if (!(flags & vcmodes::kTurn)) {
    double rate = turnrate * kPi / 180.0;
    switch (pdu.turn()) {
      case DtMoveVCPdu::LEFT:
        eye_.heading -= rate;
        break;
      case DtMoveVCPdu::RIGHT:
        eye_.heading += rate;
        break;
      case DtMoveVCPdu::UP:
        eye_.pitch += rate;
        break;
      case DtMoveVCPdu::DOWN:
        eye_.pitch -= rate;
        break;
      default:
        break;  // an eye does not turn forwards or backwards
    }
    line += " turn=" + directionText(pdu.turn());
    acted = true;
  }
  // Placing takes the location and orientation rows of the move as any mode takes its own.
  const Mode& move = vcmodes::kMove;
  for (const char* option : {"at", "orientation"}) {
    const Field& f = *vcmodes::field(move, option);
    if ((flags & f.bit) == f.bit) continue;
    merge(pdu, move, f, flags, eye_);
    line += f.what == What::Location ? " set-location" : " set-orientation";
    acted = true;
  }
  if (!acted) line += " nothing";
  return line + " -> " + show(*vcmodes::field(move, "at"), eye_, {}) + " " +
         show(*vcmodes::field(move, "orientation"), eye_, {});
}

std::unique_ptr<DtVistrelControlPdu> ViewState::status() const {
  const Mode& mode = current();
  std::unique_ptr<DtVistrelControlPdu> pdu(vcmodes::newPdu(mode));
  EyeParams eye = eye_;
  unsigned long flags = mode.ignoreAll;
  for (size_t i = 0; i < mode.count; ++i) {
    const Field& f = mode.fields[i];
    flags &= ~f.bit;
    if (f.kind != Kind::Entities) {
      write(*pdu, mode, f, eye);
      continue;
    }
    auto& group = static_cast<DtGroupVCPdu&>(*pdu);
    // -1 to remove: the list that follows is the whole group.
    group.setNumEntitiesToRemove(-1);
    group.setNumEntitiesToAdd(static_cast<int>(group_.size()));
    for (size_t k = 0; k < group_.size(); ++k) group.setEntityToAdd(static_cast<int>(k), group_[k]);
  }
  pdu->setIgnoreFlags(flags);
  pdu->setStatusCommand(true);
  return pdu;
}

const vcmodes::Mode& ViewState::current() const {
  return *vcmodes::find(mode_, wideGroup_);
}

std::string ViewState::modeName() const {
  return current().name;
}

std::string ViewState::describe() const {
  const Mode& mode = current();
  EyeParams eye = eye_;
  std::string text = mode.name;
  for (const Field* f : lineOrder(mode)) text += " " + show(*f, eye, group_);
  return text;
}

}  // namespace vcviewer
