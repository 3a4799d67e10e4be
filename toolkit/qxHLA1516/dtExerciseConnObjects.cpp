// Object instances through the exercise connection: subscribing, discovering, reflecting
// and removing, and registering, updating and deleting our own.
#include "dtExerciseConn.h"

#include <RTI/Exception.h>
#include <RTI/RTIambassador.h>

#include <chrono>

#include "wideText.h"

DtObjectListener::~DtObjectListener() = default;

namespace {
std::string what(const dtrti::Exception& e) {
  return dtwide::narrow(e.what());
}
}  // namespace

int DtExerciseConn::subscribeObjects(const std::vector<std::string>& classNames,
                                     const std::vector<std::string>& attributeNames,
                                     DtObjectListener* listener, std::string* problem) {
  objectListener_ = listener;
  listenedNames_ = attributeNames;
  listened_.clear();
  if (!connected()) return 0;
  int subscribed = 0;
  for (const std::string& className : classNames) {
    try {
      const dtrti::ObjectClassHandle cls = rti_->getObjectClassHandle(dtwide::widen(className));
      dtrti::AttributeHandleSet attributes;
      for (const auto& a : listenedAttributes(cls)) attributes.insert(a.first);
      if (attributes.empty()) continue;
      rti_->subscribeObjectClassAttributes(cls, attributes, true);
      ++subscribed;
    } catch (const dtrti::NameNotFound&) {
      // Not in this federation's object model: nothing of that class can come.
    } catch (const dtrti::Exception& e) {
      if (problem) *problem = "subscribing to " + className + " failed: " + what(e);
      return subscribed;
    }
  }
  if (subscribed) awaitRti(false);
  return subscribed;
}

const std::vector<std::pair<dtrti::AttributeHandle, int>>& DtExerciseConn::listenedAttributes(
    dtrti::ObjectClassHandle cls) {
  auto found = listened_.find(cls);
  if (found != listened_.end()) return found->second;
  std::vector<std::pair<dtrti::AttributeHandle, int>>& out = listened_[cls];
  for (std::size_t i = 0; i < listenedNames_.size(); ++i) {
    try {
      out.emplace_back(rti_->getAttributeHandle(cls, dtwide::widen(listenedNames_[i])),
                       static_cast<int>(i));
    } catch (const dtrti::Exception&) {
      // This class has no such attribute (a BaseEntity has no Marking).
    }
  }
  return out;
}

void DtExerciseConn::objectDiscovered(dtrti::ObjectInstanceHandle object,
                                      dtrti::ObjectClassHandle cls, const std::wstring& name) {
  ObjectEvent event{ObjectEvent::Discovered, object, cls, name, {}};
  if (holding_ || !heldObjects_.empty())
    heldObjects_.push_back(std::move(event));
  else
    deliverObject(event);
}

void DtExerciseConn::objectReflected(dtrti::ObjectInstanceHandle object,
                                     const dtrti::AttributeHandleValueMap& values) {
  if (holding_ || !heldObjects_.empty()) {
    ObjectEvent event{ObjectEvent::Reflected, object, {}, {}, {}};
    // An RTI may hand over values that point into its receive buffer.
    for (const auto& v : values)
      event.values[v.first] = dtrti::VariableLengthData(v.second.data(), v.second.size());
    heldObjects_.push_back(std::move(event));
    return;
  }
  // The common case, many times a second per entity: no copies.
  reflectNow(object, values);
}

void DtExerciseConn::reflectNow(dtrti::ObjectInstanceHandle object,
                                const dtrti::AttributeHandleValueMap& values) {
  auto it = instances_.find(object);
  if (it == instances_.end() || !objectListener_) return;
  const auto& attributes = listenedAttributes(it->second.cls);
  reflected_.clear();
  for (const auto& a : attributes) {
    auto v = values.find(a.first);
    if (v != values.end())
      reflected_.push_back(DtAttributeValue{
          a.second, static_cast<const unsigned char*>(v->second.data()), v->second.size()});
  }
  if (reflected_.empty()) return;
  InRtiCallback inCallback(inRtiCallback_);
  objectListener_->objectReflected(it->second.id, reflected_.data(),
                                   static_cast<int>(reflected_.size()));
}

void DtExerciseConn::objectRemoved(dtrti::ObjectInstanceHandle object) {
  ObjectEvent event{ObjectEvent::Removed, object, {}, {}, {}};
  if (holding_ || !heldObjects_.empty())
    heldObjects_.push_back(std::move(event));
  else
    deliverObject(event);
}

void DtExerciseConn::deliverObject(const ObjectEvent& event) {
  InRtiCallback inCallback(inRtiCallback_);
  switch (event.kind) {
    case ObjectEvent::Discovered: {
      if (instances_.count(event.object)) return;
      Instance& in = instances_[event.object];
      in.id = ++nextObjectId_;
      in.cls = event.cls;
      in.name = event.name;
      objectIds_[in.id] = event.object;
      std::string className;
      try {
        className = dtwide::narrow(rti_->getObjectClassName(event.cls));
      } catch (const dtrti::Exception&) {
        // The listener still hears of it, under no class name.
      }
      if (objectListener_)
        objectListener_->objectDiscovered(in.id, className, dtwide::narrow(event.name));
      return;
    }
    case ObjectEvent::Reflected:
      reflectNow(event.object, event.values);
      return;
    case ObjectEvent::Removed: {
      auto it = instances_.find(event.object);
      if (it == instances_.end()) return;
      const DtObjectId id = it->second.id;
      objectIds_.erase(id);
      instances_.erase(it);
      if (objectListener_) objectListener_->objectRemoved(id);
      return;
    }
  }
}

bool DtExerciseConn::reserveName(const std::wstring& name) {
  pendingName_ = name;
  pendingNameResult_ = 0;
  try {
    rti_->reserveObjectInstanceName(name);
    holding_ = true;
    const auto until = std::chrono::steady_clock::now() + kRtiWait;
    while (pendingNameResult_ == 0 && std::chrono::steady_clock::now() < until)
      rti_->evokeCallback(0.01);
  } catch (const dtrti::Exception&) {
    pendingNameResult_ = -1;
  }
  holding_ = false;
  pendingName_.clear();
  return pendingNameResult_ > 0;
}

DtObjectId DtExerciseConn::registerObject(const std::string& className,
                                          const std::vector<std::string>& attributeNames,
                                          const std::string& instanceName, std::string* problem) {
  if (!connected()) {
    if (problem) *problem = "not connected";
    return 0;
  }
  try {
    const dtrti::ObjectClassHandle cls = rti_->getObjectClassHandle(dtwide::widen(className));
    Instance in;
    in.cls = cls;
    in.own = true;
    for (const std::string& a : attributeNames)
      in.attributes.push_back(rti_->getAttributeHandle(cls, dtwide::widen(a)));
    dtrti::AttributeHandleSet& published = objectPublished_[cls];
    const std::size_t before = published.size();
    published.insert(in.attributes.begin(), in.attributes.end());
    if (published.size() != before) {
      rti_->publishObjectClassAttributes(cls, published);
      awaitRti(true);
    }
    // Names are asked for inside our own call, never from a callback, so the wait for
    // the answer may evoke.
    const std::wstring wanted = dtwide::widen(instanceName);
    dtrti::ObjectInstanceHandle object;
    if (!instanceName.empty() && !inRtiCallback_ && reserveName(wanted)) {
      object = rti_->registerObjectInstance(cls, wanted);
      in.name = wanted;
    } else {
      object = rti_->registerObjectInstance(cls);
      in.name = rti_->getObjectInstanceName(object);
    }
    in.id = ++nextObjectId_;
    objectIds_[in.id] = object;
    const DtObjectId id = in.id;
    instances_[object] = std::move(in);
    return id;
  } catch (const dtrti::NameNotFound&) {
    if (problem) *problem = className + " or one of its attributes is not in the object model";
  } catch (const dtrti::Exception& e) {
    if (problem) *problem = "registering " + className + " failed: " + what(e);
  }
  return 0;
}

DtExerciseConn::Instance* DtExerciseConn::ownInstance(DtObjectId id,
                                                      dtrti::ObjectInstanceHandle* handle) {
  auto h = objectIds_.find(id);
  if (h == objectIds_.end()) return nullptr;
  auto it = instances_.find(h->second);
  if (it == instances_.end() || !it->second.own) return nullptr;
  *handle = h->second;
  return &it->second;
}

bool DtExerciseConn::updateObject(DtObjectId id, const DtAttributeValue* values, int count) {
  dtrti::ObjectInstanceHandle object;
  Instance* in = connected() ? ownInstance(id, &object) : nullptr;
  if (!in) return false;
  dtrti::AttributeHandleValueMap map;
  for (int i = 0; i < count; ++i) {
    const int index = values[i].index;
    if (index < 0 || static_cast<std::size_t>(index) >= in->attributes.size()) continue;
    map[in->attributes[static_cast<std::size_t>(index)]] =
        dtrti::VariableLengthData(values[i].data, values[i].size);
  }
  try {
    rti_->updateAttributeValues(object, map, dtrti::VariableLengthData());
    return true;
  } catch (const dtrti::Exception& e) {
    fail("updating " + dtwide::narrow(in->name) + " failed: " + what(e));
    return false;
  }
}

bool DtExerciseConn::deleteObject(DtObjectId id) {
  dtrti::ObjectInstanceHandle object;
  Instance* in = connected() ? ownInstance(id, &object) : nullptr;
  if (!in) return false;
  try {
    rti_->deleteObjectInstance(object, dtrti::VariableLengthData());
  } catch (const dtrti::Exception& e) {
    fail("deleting " + dtwide::narrow(in->name) + " failed: " + what(e));
    return false;
  }
  objectIds_.erase(id);
  instances_.erase(object);
  return true;
}

std::string DtExerciseConn::objectName(DtObjectId id) const {
  auto h = objectIds_.find(id);
  if (h == objectIds_.end()) return {};
  auto it = instances_.find(h->second);
  return it == instances_.end() ? std::string() : dtwide::narrow(it->second.name);
}
