// Writes the seed corpora of the fuzz targets into DIR/<target>/, one file per seed:
// valid PDUs of every class (fresh, filled in, and as the controller and the drawer send
// them), their text forms, valid frames and frame sequences, the project's FDDs and a
// few command lines. Fuzzing starts from these and mutates them.
//
//   fuzz_seeds DIR
#include <sys/stat.h>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "dtOutput.h"
#include "fdd_parser.h"
#include "pduClasses.h"
#include "protocol.h"
#include "vistrelControl.h"

namespace {

using Bytes = std::vector<unsigned char>;

class Corpus {
 public:
  Corpus(const std::string& root, const std::string& name) : dir_(root + "/" + name) {
    ::mkdir(dir_.c_str(), 0755);
  }
  void add(const void* p, size_t n) {
    char name[32];
    std::snprintf(name, sizeof name, "/seed-%04d", count_++);
    std::ofstream(dir_ + name, std::ios::binary)
        .write(static_cast<const char*>(p), static_cast<std::streamsize>(n));
  }
  void add(const Bytes& b) { add(b.data(), b.size()); }
  void add(const std::string& s) { add(s.data(), s.size()); }

 private:
  std::string dir_;
  int count_ = 0;
};

// Collects every PDU the controller and the drawer send.
class Recorder : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override { sent.emplace_back(pdu, pdu + length); }
  std::vector<Bytes> sent;
};

std::vector<std::unique_ptr<DtVistrelControlPdu>> everyClass() {
  std::vector<std::unique_ptr<DtVistrelControlPdu>> pdus;
  for (const pduclasses::Maker& make : pduclasses::fresh()) pdus.emplace_back(make());
  return pdus;
}

// The same classes with their variable parts in use: lists, segments, points, texts.
std::vector<std::unique_ptr<DtVistrelControlPdu>> filledIn() {
  std::vector<std::unique_ptr<DtVistrelControlPdu>> pdus;
  auto* group = new DtGroupVCPdu;
  group->setNumEntitiesToRemove(2);
  group->setNumEntitiesToAdd(3);
  group->setEntityToRemove(0, "1:2:3");
  group->setEntityToAdd(2, "a name with blanks");
  pdus.emplace_back(group);
  auto* modeless = new DtModelessVCPdu;
  modeless->setPrimary("1:1:1");
  modeless->setNumEntitiesToRemove(-1);
  modeless->setNumEntitiesToAdd(2);
  modeless->setEntityToAdd(1, "7:7:7");
  pdus.emplace_back(modeless);
  auto* tether = new DtTetherVCPdu;
  tether->setAttachId("1:2:3");
  tether->setMarkingText("two words");
  tether->setTopoUpOffset(DtVector64(1, 2, 3));
  pdus.emplace_back(tether);
  auto* options = new DtOptionsPdu;
  options->setDatabaseToLoad("terrain/db.flt");
  options->setFov(45);
  options->setFeatureFilename("features.xml");
  options->setVideoCaptureCommand(DtOptionsPdu::DtVideoCaptureRecord);
  pdus.emplace_back(options);
  for (bool current : {true, false}) {
    DtVistrelControlPdu* made =
        current ? DtNewDrawControlPdu(static_cast<DtViewerCommand>(DtVdc3DSegmentedLine))
                : DtNewDrawControlPduV0(static_cast<DtViewerCommand>(DtVdc3DSegmentedLine));
    auto* line = dynamic_cast<DtVdcLinePdu*>(made);
    line->setNumSegments(5);
    for (unsigned s = 0; s < 5; ++s) line->setPercentage(s, static_cast<unsigned char>(20 * s));
    line->attachTo(DtString("1:2:3"), DtVector64(4, 5, 6));
    pdus.emplace_back(line);
  }
  auto* area = new DtVdcAreaPdu;
  area->setNumPoints(16);
  for (int i = 0; i < 16; ++i) area->setPoint(i, DtVector64(i, -i, 0.5 * i));
  area->setTextureFilename("grass.png");
  pdus.emplace_back(area);
  auto* text = new DtVdcTextPdu;
  text->setText("some text to show");
  pdus.emplace_back(text);
  auto* attribute = new DtVdcAttributePdu;
  attribute->setName("speed");
  attribute->setRange(0, 100);
  pdus.emplace_back(attribute);
  auto* update = new DtVdcAttributeUpdatePduV0;
  update->setText("image.bmp");
  pdus.emplace_back(update);
  auto* layer = new DtVdcLayerPdu;
  layer->setName("overlay");
  pdus.emplace_back(layer);
  return pdus;
}

std::vector<Bytes> controllerAndDrawerOutput() {
  Recorder rec;
  {
    DtVistrelRemoteController c(&rec, "viewer-1");
    c.requestCurrentViewMode("viewer-1");
    c.setPrimarySecondary("1:1:1", "2:2:2");
    c.setGroup(DtGlobalObjectDesignatorList{"1:1:1", "2:2:2", "3:3:3"});
    c.removeFromGroup(DtGlobalObjectDesignatorList{"2:2:2"});
    c.moveEyepoint(DtMoveVCPdu::FORWARDS);
    DtVector64 where(1, 2, 3);
    DtTaitBryan how(0.1, 0.2, 0.3);
    c.set(&where, &how);
    c.setStepsize(2.5f);
    DtString id("1:2:3");
    float radius = 100, heading = 1, pitch = 0.5f, rate = 0.1f;
    c.setOrbitMode(&id, &radius, &heading, &pitch, &rate);
    c.setCompassMode(&id, &radius, nullptr, nullptr);
    c.setMimicMode(&id, &where);
    c.setPivotMode(&where, &radius, &heading, &pitch);
    c.setTetherMode(&id, &where, &how);
    c.setTrackMode(&id, &where);
    c.setMimicTrackMode(&id, &id, &where);
    c.setTetherTrackMode(&id, &id, &where);
    DtGlobalObjectDesignatorList ids{"4:4:4", "5:5:5"};
    c.setWideGroupMode(&ids, &radius, &heading, &pitch);
    c.setDatabaseToLoad("db");
    c.startVideoRecording("clip");
    c.loadFeatures("features.xml");
  }
  {
    DtVistrelRemoteDrawer d(&rec, "drawer-1");
    d.add(new DtVdcDrawLayerObject(1, "layer"));
    d.add(new DtVdcText2DObject(2, "label", DtVdcVector2D(0.5, 0.5), DtVdcColor(255, 0, 0, 255),
                                false));
    d.add(new DtVdcLine2DObject(3, DtVdcVector2D(0, 0), DtVdcVector2D(1, 1), 3, DtVdcColor(),
                                DtVdcSegmentLightning, DtVdcSegmentArrowDouble, 2, 0xFFFF, true));
    d.add(new DtVdcLine3DObject(4, DtVdc3DAttachPoint(DtString("1:2:3")),
                                DtVdc3DAttachPoint(DtVector64(1, 2, 3)), 2, DtVector64(0, 0, 10),
                                DtVdcColor(), DtVdcSegmentStraight, DtVdcSegmentArrowEnd, 1,
                                0xFFFFFFFF, false, true, true));
    d.add(new DtVdcTriangle3DObject(5, DtVector64(0, 0, 0), DtVector64(1, 0, 0),
                                    DtVector64(0, 1, 0), DtVdcColor(), false));
    d.add(new DtVdcArea3DObject(6, {DtVector64(0, 0, 0), DtVector64(1, 0, 0), DtVector64(1, 1, 0)},
                                DtVdcColor(), "textures", "grass.png", 4, false));
    d.add(new DtVdcCylinderObject(7, DtVdc3DAttachPoint(DtVector64(0, 0, 0)),
                                  DtVdc3DAttachPoint(7u, 0.5), DtVdcVector2D(2, 3), DtVector64(),
                                  DtVdcColor(), false));
    auto* panel = new DtVdcAttributeGroupTemplateObject(8, "panel");
    panel->createAttributeTemplate(9, "speed", 0, 300);
    panel->createAttributeTemplate(10, "name", DtVdcAttributeTemplateObject::DtVdcBmpAttribute);
    d.add(panel);
    auto* values = new DtVdcAttributeGroupObject(11, panel, DtVdc3DAttachPoint(DtString("1:2:3")),
                                                 DtVector64(), DtVdcColor(), false);
    values->setValueBarAttributeValue(9, 120);
    values->setBmpAttributeValue(10, "icon.bmp");
    d.add(values);
    d.update(11u);
    d.addToLayer(2, 1);
    d.hide(3);
    d.showAttribute(11, 9);
    d.remove(11);
    delete values;
  }
  return rec.sent;
}

// ------------------------------------------------------------------ frames

struct Frames {
  vcrti::ByteBuffer out;
  void create(const std::string& fed, const vcrti::ByteBuffer& model) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Create);
    w.u32(1).str(fed).str("VistrelControl.xml").bytes(model.data(), model.size());
    w.finish();
  }
  void join(const std::string& fed, std::uint32_t id) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Join);
    w.u32(id).str(fed).str("seed");
    w.finish();
  }
  void request(vcrti::wire::MsgType type, std::uint32_t id, std::uint32_t handle) {
    vcrti::wire::FrameWriter w(out, type);
    w.u32(id).u32(handle);
    w.finish();
  }
  void resign(std::uint32_t id) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Resign);
    w.u32(id).u32(0);
    w.finish();
  }
  void reserve(const std::string& name) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::ReserveName);
    w.str(name);
    w.finish();
  }
  // Instance `n` of federate `fed` (the handle the hub gives its n-th joiner) of class
  // `cls`, under `name`.
  void registration(std::uint32_t fed, std::uint32_t n, std::uint32_t cls,
                    const std::string& name) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Register);
    w.u64(std::uint64_t{fed} << 32 | n).u32(cls).str(name);
    w.finish();
  }
  void instance(vcrti::wire::MsgType type, std::uint64_t instance, std::uint32_t attr,
                const Bytes& value) {
    vcrti::wire::FrameWriter w(out, type);
    w.u64(instance);
    if (type == vcrti::wire::MsgType::LocalDelete) {
      w.finish();
      return;
    }
    w.bytes("tag", 3);
    if (type != vcrti::wire::MsgType::Delete) w.u32(1).u32(attr).bytes(value.data(), value.size());
    w.finish();
  }
  void destroy(const std::string& fed, std::uint32_t id) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Destroy);
    w.u32(id).str(fed);
    w.finish();
  }
  void interaction(std::uint32_t cls, std::uint32_t param, const Bytes& value) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Interaction);
    w.u32(cls).bytes("tag", 3).u32(1).u32(param).bytes(value.data(), value.size());
    w.finish();
  }
  void reply(std::uint32_t id, const std::string& text, const vcrti::ByteBuffer& payload) {
    vcrti::wire::FrameWriter w(out, vcrti::wire::MsgType::Reply);
    w.u32(id).u32(0).str(text).bytes(payload.data(), payload.size());
    w.finish();
  }
  Bytes take() {
    Bytes b(out.data(), out.data() + out.size());
    out.clear();
    return b;
  }
};

// One chunk of the hub target's input: client, 16-bit length, bytes.
void chunk(Bytes& to, unsigned char client, const Bytes& bytes) {
  to.push_back(client);
  to.push_back(static_cast<unsigned char>(bytes.size()));
  to.push_back(static_cast<unsigned char>(bytes.size() >> 8));
  to.insert(to.end(), bytes.begin(), bytes.end());
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: fuzz_seeds DIR\n");
    return 2;
  }
  const std::string root = argv[1];
  ::mkdir(root.c_str(), 0755);
  DtInfo.setSink([](void*, const char*, size_t) {}, nullptr);

  // PDUs and their text forms.
  Corpus bytes(root, "fuzz_pdu_bytes"), text(root, "fuzz_pdu_text");
  std::vector<Bytes> pduSeeds;
  std::vector<std::unique_ptr<DtVistrelControlPdu>> pdus = everyClass();
  for (auto& pdu : filledIn()) pdus.push_back(std::move(pdu));
  for (const auto& pdu : pdus) pduSeeds.emplace_back(pdu->packet(), pdu->packet() + pdu->length());
  // Text seeds: the class's number, then a text form of it.
  auto textSeed = [&](int index, const std::string& form) {
    std::string seed(1, static_cast<char>(index));
    text.add(seed + form);
  };
  const auto& makers = pduclasses::all();
  for (size_t i = 0; i < makers.size(); ++i) {
    std::unique_ptr<DtVistrelControlPdu> made(makers[i]());
    if (made) textSeed(static_cast<int>(i), made->string());
  }
  for (const auto& pdu : filledIn()) {
    const int index = pduclasses::indexOf(*pdu);
    if (index >= 0) textSeed(index, pdu->string());
  }
  for (const Bytes& b : controllerAndDrawerOutput()) pduSeeds.push_back(b);
  for (const Bytes& b : pduSeeds) bytes.add(b);
  // The viewer's input: PDUs behind a two-byte length; each alone, then the controller's
  // and the drawer's whole session in one run.
  Corpus viewer(root, "fuzz_viewer");
  auto framed = [](const Bytes& pdu) {
    Bytes out{static_cast<unsigned char>(pdu.size() >> 8 & 0x7F),
              static_cast<unsigned char>(pdu.size() & 0xFF)};
    out.insert(out.end(), pdu.begin(), pdu.end());
    return out;
  };
  Bytes viewerRun;
  for (const Bytes& b : pduSeeds) viewer.add(framed(b));
  for (const Bytes& b : controllerAndDrawerOutput()) {
    Bytes one = framed(b);
    viewerRun.insert(viewerRun.end(), one.begin(), one.end());
  }
  viewer.add(viewerRun);
  textSeed(0, "1 2 3 0.5 0.25 0.125");
  textSeed(1, "1:2:3,a b,1.5,2.5,3.5,-4,5,6,marking with blanks");

  // Frames, in the forms the hub and the federates exchange them.
  const vcrti::FddModel model = vcrti::parseFddFile(L"" VC_FDD_FILE);
  vcrti::ByteBuffer blob;
  vcrti::encodeFdd(model, blob);
  const std::uint32_t cls = model.interactions.findClass(L"ViewControl");
  const std::uint32_t param = model.interactions.findMember(cls, L"ViewControlPdu");
  vcrti::ByteBuffer joinPayload;
  joinPayload.append("\x01\x00\x00\x00", 4);
  joinPayload.append(blob.data(), blob.size());

  Corpus frames(root, "fuzz_rti_frames");
  Frames f;
  f.create("Fed", blob);
  frames.add(f.take());
  f.join("Fed", 2);
  f.request(vcrti::wire::MsgType::Subscribe, 3, cls);
  f.interaction(cls, param, pduSeeds[0]);
  f.interaction(cls, param, pduSeeds.back());
  f.request(vcrti::wire::MsgType::Unsubscribe, 4, cls);
  f.resign(5);
  f.destroy("Fed", 6);
  frames.add(f.take());
  f.reply(2, "VistrelControl.xml", joinPayload);
  f.interaction(cls, param, pduSeeds[5]);
  frames.add(f.take());
  frames.add(blob.data(), blob.size());

  // The hub: one creates and joins, two others join and subscribe, traffic flows both
  // ways, one stops reading, everyone leaves.
  Corpus hub(root, "fuzz_hub");
  Bytes session;
  f.create("Fed", blob);
  f.join("Fed", 2);
  f.request(vcrti::wire::MsgType::Subscribe, 3, cls);
  chunk(session, 0, f.take());
  for (unsigned char client : {1, 2}) {
    f.join("Fed", 1);
    f.request(vcrti::wire::MsgType::Subscribe, 2, client == 1 ? cls : 0);
    chunk(session, client, f.take());
  }
  for (size_t i = 0; i < pduSeeds.size(); i += 7) {
    f.interaction(cls, param, pduSeeds[i]);
    chunk(session, static_cast<unsigned char>(i % 2), f.take());
  }
  hub.add(session);
  Bytes busy = session;
  Bytes big(60000, 0xAB);
  for (int i = 0; i < 4; ++i) {
    f.interaction(cls, param, big);
    chunk(busy, i == 0 ? 0x82 : 0, f.take());
  }
  f.resign(9);
  f.destroy("Fed", 10);
  chunk(busy, 0x40, f.take());
  hub.add(busy);

  // What hostile clients once did to the hub, each against a federation in use.
  Bytes setUp;
  f.create("Fed", blob);
  f.join("Fed", 2);
  f.request(vcrti::wire::MsgType::Subscribe, 3, cls);
  chunk(setUp, 0, f.take());
  f.join("Fed", 1);
  f.request(vcrti::wire::MsgType::Subscribe, 2, cls);
  chunk(setUp, 1, f.take());
  // Joins and resigns whose answers (each with the whole model) are never read.
  Bytes unread = setUp;
  for (std::uint32_t i = 0; i < 200; ++i) {
    f.join("Fed", 2 * i);
    f.resign(2 * i + 1);
  }
  chunk(unread, 0x82, f.take());
  chunk(unread, 0x20, {});
  hub.add(unread);
  // Subscriptions and sends in turn, each changing the routes.
  Bytes churn = setUp;
  for (std::uint32_t i = 0; i < 300; ++i) {
    f.request(i % 2 ? vcrti::wire::MsgType::Unsubscribe : vcrti::wire::MsgType::Subscribe, i,
              i % 3 ? cls : 0);
    f.interaction(cls, param, pduSeeds[i % pduSeeds.size()]);
    chunk(churn, 2, f.take());
  }
  hub.add(churn);
  // Objects: one registers and updates (the root's one attribute), another subscribes late,
  // asks for values, forgets one locally; a name is reserved twice; one instance is deleted
  // and the owner leaves with the rest.
  Bytes objects = setUp;
  using vcrti::wire::MsgType;
  f.reserve("Jet");
  f.registration(1, 1, 0, "Jet");
  f.registration(1, 2, 0, "HLAobject_1_2");
  f.instance(MsgType::Update, std::uint64_t{1} << 32 | 1, 0, pduSeeds[0]);
  chunk(objects, 0, f.take());
  f.request(MsgType::SubscribeObjects, 4, 0);
  f.reserve("Jet");
  f.instance(MsgType::RequestUpdate, std::uint64_t{1} << 32 | 2, 0, {});
  f.instance(MsgType::LocalDelete, std::uint64_t{1} << 32 | 1, 0, {});
  chunk(objects, 1, f.take());
  f.instance(MsgType::Update, std::uint64_t{1} << 32 | 1, 0, pduSeeds[1]);
  f.instance(MsgType::Delete, std::uint64_t{1} << 32 | 2, 0, {});
  f.resign(5);
  chunk(objects, 0, f.take());
  hub.add(objects);
  // Half a frame, and then nothing more.
  Bytes stalled = setUp;
  f.interaction(cls, param, Bytes(3000, 0x5A));
  Bytes half = f.take();
  half.resize(half.size() / 2);
  chunk(stalled, 0x22, half);
  f.interaction(cls, param, pduSeeds[0]);
  chunk(stalled, 0, f.take());
  hub.add(stalled);
  // A subscriber that stops reading while another federate keeps sending.
  Bytes slow = setUp;
  chunk(slow, 0x81, {});
  for (int i = 0; i < 20; ++i) {
    f.interaction(cls, param, Bytes(1000, static_cast<unsigned char>(i)));
    chunk(slow, i == 19 ? 0x20 : 0, f.take());
  }
  hub.add(slow);
  // Names that would forge log lines.
  Bytes forged;
  f.create("x\nrtihub: forged\x1b[2J\\", blob);
  f.join("x\nrtihub: forged\x1b[2J\\", 2);
  chunk(forged, 0, f.take());
  hub.add(forged);
  // Federations created and left behind, more than the budget holds, then time passes.
  Bytes left = setUp;
  for (int i = 0; i < 12; ++i) f.create("Left" + std::to_string(i), blob);
  chunk(left, 2, f.take());
  chunk(left, 0x20, {});
  f.create("After", blob);
  chunk(left, 2, f.take());
  hub.add(left);

  // Object models.
  Corpus fdd(root, "fuzz_fdd");
  fdd.add(readFile(VC_FDD_FILE));
  // FOM modules with datatypes of every kind.
  fdd.add(readFile(VC_FOM_DIR "/rpr-fom-2.0/RPR-Foundation_v2.0.xml"));
  fdd.add(readFile(VC_FOM_DIR "/rpr-fom-2.0/RPR-Physical_v2.0.xml"));
  fdd.add(readFile(VC_FOM_DIR "/VistrelControl-1516e.xml"));
  fdd.add(std::string(R"(<?xml version="1.0"?>
<objectModel name="Hierarchy" type="FOM">
  <objects><objectClass name="HLAobjectRoot"><objectClass name="Thing"><attribute name="a"/></objectClass></objectClass></objects>
  <interactions>
    <interactionClass name="HLAinteractionRoot">
      <interactionClass><name>Base</name><parameter><name>p1</name></parameter>
        <interactionClass name="Derived"><parameter name="p2"/></interactionClass>
      </interactionClass>
      <interactionClass name="Other"><parameter name="q1"/></interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)"));

  // Command lines, words separated by NUL.
  Corpus cmd(root, "fuzz_cmdline");
  using namespace std::string_literals;
  for (const std::string& line : {"--text\0hello\0-c\0"
                                  "42\0run\0word\0"
                                  "7"s,
                                  "-fr\0-1.5\0--vec=1,2,3\0list\0"
                                  "1,2\0"
                                  "3,4"s,
                                  "--no-flag\0--some\0-0.5,0.5\0nested\0leaf\0"
                                  "3.25"s,
                                  "--word=bb\0--help"s})
    cmd.add(line);
  return 0;
}
