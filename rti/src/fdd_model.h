// The part of a federation object model that the RTI works with: the interaction and
// object class trees with their parameters and attributes, their transportation and
// order, and the datatypes by name with enough of their structure to tell whether two
// modules define one the same way. Handles are positions in these tables, so every
// process that holds the same model agrees on them; the model travels from the creating
// federate to the hub and from the hub to every joiner. Modules merged later append to
// the tables (fom_modules.h), so a handle once given keeps its meaning.
#ifndef VCRTI_FDD_MODEL_H
#define VCRTI_FDD_MODEL_H

#include "byte_buffer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace vcrti {

constexpr std::uint32_t kNoClass = 0xFFFFFFFFu;

// Limits on what a model may expand to once indexed. Each class holds its inherited
// members and its full name, so a deep or wide model costs far more than its bytes: a
// one-megabyte model sent to the hub could otherwise demand gigabytes and hours. Real
// object models stay orders of magnitude below these.
constexpr std::uint32_t kMaxClassDepth = 64;            // classes below the root
constexpr std::size_t kMaxInheritedMembers = 1u << 18;  // all classes' member lists together
constexpr std::size_t kMaxNameCharacters = 1u << 20;    // all classes' qualified names together
constexpr std::size_t kMaxDataTypeEntries = 1u << 18;   // datatypes and their items together
// The largest model the hub takes, encoded: it travels whole in one frame (the creator's,
// each join's answer, ModelGrown) with room beside it for the names that go with it.
constexpr std::size_t kMaxModelBytes = (std::size_t{1} << 20) - (std::size_t{64} << 10);

struct FddClass {
  std::wstring name;                    // as declared
  std::uint32_t parent = kNoClass;      // always lower than the class's own index
  std::vector<std::uint32_t> declared;  // members declared here (parameters or attributes)
  // Derived by FddModel::index(), these two:
  std::wstring qualified;          // "HLAinteractionRoot.A.B"
  std::vector<std::uint32_t> all;  // inherited members first, then declared ones
  // The module that defines the class (an index into FddModel::modules), or kNoClass
  // while it is only named to carry subclasses defined elsewhere (a scaffolding class),
  // which a module that defines it completes.
  std::uint32_t module = kNoClass;
  std::wstring transportation;  // interaction classes; empty when not given
  std::wstring order;
};

struct FddMember {
  std::wstring name;
  std::uint32_t owner = kNoClass;  // the declaring class
  std::wstring dataType;           // each empty when not given
  std::wstring transportation;     // attributes
  std::wstring order;
};

// A datatype by name. Only what makes two definitions the same encoding is kept (no
// semantics): `properties` and `items` hold, by kind,
//   Basic:         size, endian
//   Simple:        representation
//   Enumerated:    representation;  items: enumerators (name, value)
//   Array:         element dataType, cardinality, encoding
//   FixedRecord:   encoding;        items: fields (name, dataType)
//   VariantRecord: discriminant, its dataType, encoding;
//                  items: alternatives (name, dataType, enumerators)
struct FddItem {
  std::wstring name, dataType, value;
  bool operator==(const FddItem& o) const {
    return name == o.name && dataType == o.dataType && value == o.value;
  }
};

struct FddDataType {
  enum class Kind : std::uint32_t { Basic, Simple, Enumerated, Array, FixedRecord, VariantRecord };
  static constexpr std::uint32_t kKinds = 6;
  Kind kind = Kind::Basic;
  std::wstring name;
  std::uint32_t module = 0;  // where it is defined: an index into FddModel::modules
  std::vector<std::wstring> properties;
  std::vector<FddItem> items;
  // Whether the two describe the same encoding (the module aside).
  bool sameAs(const FddDataType& o) const {
    return kind == o.kind && name == o.name && properties == o.properties && items == o.items;
  }
};

struct FddTree {
  std::vector<FddClass> classes;  // [0] is the root
  std::vector<FddMember> members;

  // cls is ancestor or itself; both indexes must be valid.
  bool isSameOrDescendant(std::uint32_t cls, std::uint32_t ancestor) const {
    while (cls != kNoClass) {
      if (cls == ancestor) return true;
      if (cls < ancestor) return false;  // parents always precede their children
      cls = classes[cls].parent;
    }
    return false;
  }
  bool memberAvailable(std::uint32_t cls, std::uint32_t member) const {
    return member < members.size() && isSameOrDescendant(cls, members[member].owner);
  }
  // Name lookups: the qualified name, the same without the root, and the last component
  // when it is unique. Returns kNoClass when unknown or ambiguous.
  std::uint32_t findClass(const std::wstring& name) const;
  std::uint32_t findMember(std::uint32_t cls, const std::wstring& name) const;

  std::unordered_map<std::wstring, std::uint32_t> byName;  // ambiguous names map to kNoClass
};

struct FddModel {
  std::wstring fileName;  // where it was read from, for messages
  FddTree interactions;   // root HLAinteractionRoot
  FddTree objects;        // root HLAobjectRoot
  // The modules (their file names) the model was made of, in the order they came.
  std::vector<std::wstring> modules;
  std::vector<FddDataType> dataTypes;

  // Fills the derived fields; returns an empty string or why the model is invalid.
  std::string index();
  // Null when no datatype has that name.
  const FddDataType* findDataType(const std::wstring& name) const;
  // The module a class or datatype comes from, for messages.
  std::wstring moduleName(std::uint32_t module) const;

  std::unordered_map<std::wstring, std::uint32_t> dataTypeByName;  // derived by index()
};

// The hub and the federates pass the model in this form. decodeFdd() accepts any bytes:
// it checks every count and index and fails rather than read outside them.
// False, with nothing appended, when a name is longer than a frame can carry.
bool encodeFdd(const FddModel& model, ByteBuffer& out);
bool decodeFdd(const unsigned char* data, std::size_t size, FddModel& out, std::string& error);

}  // namespace vcrti

#endif
