#pragma once
#include "dtExerciseConn.h"
#include "dtExport.h"
#include "dtList.h"
#include "dtString.h"
#include "dtVector.h"
#include "hVistrelControlInter.h"
#include "moveVcPdu.h"
#include "optionsPdu.h"
#include "vistrelControlPdu.h"

/// DtCustomRemoteControlSender is the application's own transport for control PDUs: the
/// controller and the drawer hand it each PDU's complete bytes, ready for the wire. The
/// pointer is valid only during the call; the library never deletes the sender.
class DT_EXPORT DtCustomRemoteControlSender {
 public:
  virtual ~DtCustomRemoteControlSender();
  /// Carries `length` bytes of one PDU (header and body).
  virtual void send(const char* pdu, int length) = 0;
};

/// A view-mode-change callback: receives every control PDU that reaches the controller
/// for the viewer it was registered for (status reports are those whose
/// statusCommand() is true).
typedef void (*DtViewModeChangeCallback)(const DtVistrelControlPdu& pdu, void* usr);

/// DtVistrelRemoteController steers one viewer, or all of them ("0:0:0"), from the
/// application: every command builds one control PDU, stamps the target viewer id and
/// this controller's id into it and sends it through the exercise connection and/or
/// the custom sender. Over a connection it also hands received control PDUs to the
/// view-mode-change callbacks registered for their viewer id (or for "0:0:0"), dropping
/// the echoes of its own commands unless told otherwise.
class DT_EXPORT DtVistrelRemoteController {
 public:
  typedef DtMoveVCPdu::Direction Direction;

  /// One registered view-mode-change callback.
  struct DT_EXPORT CbStruct {
    CbStruct(const DtString& viewer, DtViewModeChangeCallback cb, void* data)
        : viewerId(viewer), callback(cb), usr(data) {}
    DtString viewerId;
    DtViewModeChangeCallback callback;
    void* usr;
  };

  /// "0:0:0": every viewer, as a target and as a callback's viewer id.
  static const DtString SEND_TO_ALL;

  /// Sends through the application's transport only; receives nothing.
  DtVistrelRemoteController(DtCustomRemoteControlSender* sender,
                            const DtString& target = SEND_TO_ALL);
  /// Sends and receives through an existing connection, which stays the application's.
  DtVistrelRemoteController(DtExerciseConn* conn, const DtString& target = SEND_TO_ALL);
  /// Makes (and owns) its own connection from the connection's arguments.
  DtVistrelRemoteController(const char* execName, const char* federateName, DtFomMapper* mapper,
                            const char* fedFileName, const DtString& target = SEND_TO_ALL);
  DtVistrelRemoteController(const char* execName, const char* federateName,
                            const char* fomMapperName, const char* fedFileName, void* fomMapperData,
                            const DtString& target = SEND_TO_ALL);
  virtual ~DtVistrelRemoteController();
  DtVistrelRemoteController(const DtVistrelRemoteController&) = delete;
  DtVistrelRemoteController& operator=(const DtVistrelRemoteController&) = delete;

  virtual void setTargetVistrelId(const DtString& id);
  virtual const DtString& targetVistrelId() const;
  virtual void setControllerId(const DtString& id);
  virtual const DtString& controllerId() const;
  /// Duplicates are allowed; each is called.
  virtual void addViewModeChangeCallback(DtViewModeChangeCallback cb, void* usr,
                                         const DtString& viewerId);
  /// Removes every record with this callback, user data and viewer id.
  virtual void removeViewModeChangeCallback(DtViewModeChangeCallback cb, void* usr,
                                            const DtString& viewerId);
  /// Asks the current target (whatever `viewerId` says) to report its state.
  virtual void requestCurrentViewMode(const DtString& viewerId) const;

  // ------------------------------------------------------------ group membership
  virtual void setPrimary(const DtString& id) const;
  virtual void setSecondary(const DtString& id) const;
  virtual void setPrimarySecondary(const DtString& primary, const DtString& secondary) const;
  /// Replaces the whole group.
  virtual void setGroup(const DtGlobalObjectDesignatorList& ids) const;
  virtual void addToGroup(const DtGlobalObjectDesignatorList& ids) const;
  virtual void removeFromGroup(const DtGlobalObjectDesignatorList& ids) const;

  // ------------------------------------------------------------ movement
  virtual void reset() const;
  virtual void moveEyepoint(Direction direction) const;
  virtual void turnEyepoint(Direction direction) const;
  /// Places the eyepoint; sends nothing when both are null.
  virtual void set(const DtVector64* position, const DtTaitBryan* orientation) const;
  virtual void setStepsize(float value) const;
  virtual void setTurnrate(float value) const;
  virtual void increaseStepsize() const;
  virtual void increaseTurnrate() const;
  virtual void decreaseStepsize() const;
  virtual void decreaseTurnrate() const;
  /// Switches to `mode` with the viewer's current parameters, then places the eyepoint.
  virtual void setMode(DtViewerCommand mode, const DtVector64* position,
                       const DtTaitBryan* orientation) const;

  // ------------------------------------------------------------ view modes
  // A null argument leaves the viewer's current value: its ignore bits stay set.
  virtual void setAbsoluteMode(const DtVector64* location, const DtTaitBryan* orientation) const;
  virtual void setCompassMode(const DtString* attachId, const float* radius,
                              const float* bodyHeading, const float* pitch) const;
  virtual void setMimicMode(const DtString* attachId, const DtVector64* offset) const;
  virtual void setTurretMode(const DtString* attachId, const DtVector64* offset) const;
  virtual void setOrbitMode(const DtString* attachId, const float* radius, const float* heading,
                            const float* pitch, const float* azimuthRate) const;
  virtual void setPivotMode(const DtVector64* pivotPoint, const float* radius,
                            const float* bodyHeading, const float* pitch) const;
  virtual void setTetherMode(const DtString* attachId, const DtVector64* topoUpOffset,
                             const DtTaitBryan* orientation) const;
  virtual void setTrackMode(const DtString* trackId, const DtVector64* location) const;
  virtual void setMimicTrackMode(const DtString* attachId, const DtString* trackId,
                                 const DtVector64* offset) const;
  virtual void setTetherTrackMode(const DtString* attachId, const DtString* trackId,
                                  const DtVector64* offset) const;
  virtual void setGroupMode(const DtGlobalObjectDesignatorList* ids, const float* radialOffset,
                            const float* headingOffset, const float* pitchOffset) const;
  virtual void setWideGroupMode(const DtGlobalObjectDesignatorList* ids, const float* radialOffset,
                                const float* headingOffset, const float* pitchOffset) const;

  // ------------------------------------------------------------ viewer options
  virtual void setOverlayEnabled(bool enabled) const;
  virtual void setSmoothing(DtSmoothingOption value) const;
  virtual void setSmoothingPeriod(double value) const;
  virtual void setSoundEnabled(bool value) const;
  virtual void setEntityLabelsEnabled(bool value) const;
  virtual void setTrailingEffectsEnabled(bool value) const;
  virtual void setTrajectoryHistoriesEnabled(bool value) const;
  virtual void setAggregateLevel(int value) const;
  virtual void setAggregateHighestOnly(bool value) const;
  virtual void setGroundClampingEnabled(bool value) const;
  virtual void setGroundClampRange(double value) const;
  virtual void setTimeOfDay(double value) const;
  virtual void setNearClippingPlane(double value) const;
  virtual void setFarClippingPlane(double value) const;
  virtual void setVerticalFieldOfView(double value) const;
  virtual void setFogEnabled(bool value) const;
  virtual void setDatabaseToLoad(const DtString& value) const;
  virtual void setDate(const DtString& value) const;
  /// Tells the viewer to quit; the controller itself carries on.
  virtual void exit();
  virtual void setClouds(bool value);
  virtual void setSkyDome(bool value);
  virtual void setMirrorMessageEveryFrame(bool value);
  virtual void setMirroring(bool value);
  virtual void setBroadcasting(bool value);
  virtual void setClusteringLabels(bool value);
  virtual void setTacticalGraphicsLabels(bool value);
  virtual void setShowAggregates(bool value);
  virtual void setShowEmitters(bool value);
  virtual void setXr(bool value);
  virtual void setHatLabels(bool value);
  virtual void setCurrentModelSet(const DtString& value);
  virtual void setNextModelSet();
  virtual void setPrevModelSet();
  virtual void setCurrentTextureSet(const DtString& value);
  virtual void setNextTextureSet();
  virtual void setPrevTextureSet();
  virtual void setTerrainScale(double value);
  virtual void setObjectScale(double value);
  virtual void startVideoRecording();
  virtual void startVideoRecording(const DtString& filename);
  virtual void stopVideoRecording();
  virtual void pauseVideoRecording();
  virtual void unpauseVideoRecording();
  virtual void setVideoCaptureRecordInsets(bool value);
  virtual void setVideoCaptureFramesPerSecond(int value);
  virtual void setVideoCaptureFilenameBase(const DtString& value);
  virtual void setVideoCaptureDirectory(const DtString& value);
  virtual void setConstrainWithFloor(bool value);
  virtual void setFloor(double value);
  virtual void setConstrainViewToAll(bool value);
  virtual void setBlockedDistance(double value);
  virtual void setUseNearClipForBlockedDistance(bool value);
  virtual void loadFeatures(const DtString& filename);
  virtual void clearFeatures();

  /// With the filter on (the default), received PDUs whose sender id is this
  /// controller's id are dropped: they are the echoes of our own commands.
  virtual void setIgnoreCommandsSentFromUs(bool ignore);
  /// Stamps the target and controller ids into the PDU, sends it through the connection
  /// (when its object model knows "ViewControl") and the custom sender, and restores
  /// the ids the PDU had before.
  virtual void send(const DtVistrelControlPdu& pdu) const;
  /// Hands a received interaction's PDU to the matching callbacks.
  virtual void processVistrelControl(DtVistrelControlInteraction* inter) const;
  /// Sends a group PDU with the given group command (0 group, 1 wide group).
  virtual void sendGroupPdu(const DtGlobalObjectDesignatorList* ids, const float* radialOffset,
                            const float* headingOffset, const float* pitchOffset,
                            int groupCmd) const;

  /// The function registered with the connection; calls processVistrelControl.
  static void processVistrelControlCb(DtVistrelControlInteraction* inter, void* controller);

  /// The connection, or null for a controller on a custom sender.
  DtExerciseConn* exerciseConn() const { return conn_; }

 private:
  void connect();
  template <typename Set>
  void sendOptions(Set set) const;
  void sendModeless(const DtGlobalObjectDesignatorList* toAdd,
                    const DtGlobalObjectDesignatorList* toRemove) const;

  // The records that a delivery under way still has to call; one per nested delivery.
  struct Delivery;
  void forget(const CbStruct* record) const;

  DtString controllerId_;
  DtString targetId_;
  DtList* callbacks_;
  DtExerciseConn* conn_ = nullptr;
  DtCustomRemoteControlSender* sender_ = nullptr;
  bool ownsConn_ = false;
  bool ignoreOwnCommands_ = true;
  // The innermost delivery under way, null outside processVistrelControl().
  mutable Delivery* delivery_ = nullptr;
};
