#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "dtExport.h"
#include "dtRti.h"
#include "dtString.h"

class DtExerciseConn;
class DtInteractionDecoder;
class DtInteractionEncoder;

/// DtInterClassDesc describes one interaction class of the federation's object model:
/// its name, its RTI handle and the handles of its parameters, looked up on first use.
class DT_EXPORT DtInterClassDesc {
 public:
  DtInterClassDesc(dtrti::RTIambassador* rti, const std::string& name,
                   dtrti::InteractionClassHandle handle);
  const char* name() const { return name_.c_str(); }
  dtrti::InteractionClassHandle handle() const { return handle_; }
  /// The handle of the named parameter; false when the class has no such parameter.
  bool parameterHandle(const char* name, dtrti::ParameterHandle* handle) const;

 private:
  dtrti::RTIambassador* rti_;
  std::string name_;
  dtrti::InteractionClassHandle handle_;
  mutable std::map<std::string, dtrti::ParameterHandle> parameters_;
};

/// DtFomMapper maps the toolkit's interaction class names to the federation object
/// model. The default mapper uses the names as they are (short or qualified by
/// "HLAinteractionRoot."); an application may derive its own to rename classes.
class DT_EXPORT DtFomMapper {
 public:
  DtFomMapper();
  virtual ~DtFomMapper();
  DtFomMapper(const DtFomMapper&) = delete;
  DtFomMapper& operator=(const DtFomMapper&) = delete;

  /// The class description for `name`, or null when the object model lacks the class
  /// (or the mapper is not attached to a joined connection yet).
  virtual DtInterClassDesc* interClassDesc(const char* name);
  /// The description of the class with this handle, if it was looked up before.
  DtInterClassDesc* interClassDesc(dtrti::InteractionClassHandle handle);

  /// The connection calls this once it has joined.
  void attach(dtrti::RTIambassador* rti);
  dtrti::RTIambassador* rti() const { return rti_; }

 protected:
  /// The object-model name for a toolkit name; the default returns it unchanged.
  virtual std::string fomName(const char* name) const;

 private:
  using ByName = std::map<std::string, std::unique_ptr<DtInterClassDesc>>;
  dtrti::RTIambassador* rti_ = nullptr;
  ByName byName_;  // null: not in FOM
  // The entry found last: every send and every delivery asks for the same few names.
  const ByName::value_type* lastFound_ = nullptr;
};

/// DtInteraction is one interaction of the federation as the application sees it. A
/// subclass names the object-model class it travels as.
class DT_EXPORT DtInteraction {
 public:
  DtInteraction();
  DtInteraction(const DtInteraction&);
  DtInteraction& operator=(const DtInteraction&);
  virtual ~DtInteraction();

  virtual void printData() const;
  /// The class name of the C++ object, for messages.
  virtual const char* name() const;
  /// The object-model class this interaction is sent as.
  virtual const char* interactionClassToUse(DtExerciseConn* conn) const;

  /// The description of interactionClassToUse() in the connection's object model, or
  /// null when the model lacks it.
  DtInterClassDesc* classDesc(DtExerciseConn* conn) const;
};

/// DtInteractionWithEncDec is an interaction that knows how to make the decoder and the
/// encoder that move it to and from the RTI's parameter sets.
class DT_EXPORT DtInteractionWithEncDec : public DtInteraction {
 public:
  DtInteractionWithEncDec();
  DtInteractionWithEncDec(const DtInteractionWithEncDec&);
  DtInteractionWithEncDec& operator=(const DtInteractionWithEncDec&);
  ~DtInteractionWithEncDec() override;

  virtual DtInteractionDecoder* createDecoder(DtExerciseConn* conn) const;
  virtual DtInteractionEncoder* createEncoder(DtExerciseConn* conn) const;
};

/// Decodes received parameter sets of one class into interactions, one function per
/// parameter.
class DT_EXPORT DtInteractionDecoder {
 public:
  using ParameterFcn = void (*)(DtInteraction* inter, const dtrti::ParameterHandleValueMap& values,
                                dtrti::ParameterHandle handle);

  DtInteractionDecoder(DtExerciseConn* conn, DtInterClassDesc* classDesc);
  virtual ~DtInteractionDecoder();

  /// Installs `fcn` for the named parameter; false when the class has no such parameter.
  bool addParameterDecoder(const char* parameterName, ParameterFcn fcn);
  /// Calls the function of every parameter present in `values`.
  virtual void decode(DtInteraction* inter, const dtrti::ParameterHandleValueMap& values) const;

  DtExerciseConn* conn() const { return conn_; }
  DtInterClassDesc* classDesc() const { return classDesc_; }

  /// The shared decoding buffer, at least `size` bytes. Connections are driven from the
  /// application's thread, so there is one buffer per thread; its contents are valid
  /// until the next decode on that thread.
  static char* decodingBuffer(size_t size);
  /// The value copied into the decoding buffer, zero-padded up to the length that its
  /// PDU header states, so PDU code that trusts the header never reads past the copy.
  static char* pduBuffer(const dtrti::VariableLengthData& value);

 private:
  DtExerciseConn* conn_;
  DtInterClassDesc* classDesc_;
  std::vector<std::pair<dtrti::ParameterHandle, ParameterFcn>> functions_;
};

/// Encodes interactions of one class into parameter sets, one function per parameter.
class DT_EXPORT DtInteractionEncoder {
 public:
  using ParameterFcn = void (*)(const DtInteraction* inter, dtrti::ParameterHandleValueMap& values,
                                dtrti::ParameterHandle handle);

  DtInteractionEncoder(DtExerciseConn* conn, DtInterClassDesc* classDesc);
  virtual ~DtInteractionEncoder();

  bool addParameterEncoder(const char* parameterName, ParameterFcn fcn);
  /// Calls every parameter function, which add their values to `values`.
  virtual void encode(const DtInteraction* inter, dtrti::ParameterHandleValueMap& values) const;

  DtExerciseConn* conn() const { return conn_; }
  DtInterClassDesc* classDesc() const { return classDesc_; }

 private:
  DtExerciseConn* conn_;
  DtInterClassDesc* classDesc_;
  std::vector<std::pair<dtrti::ParameterHandle, ParameterFcn>> functions_;
};
