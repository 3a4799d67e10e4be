#ifndef RTI_Typedefs_h
#define RTI_Typedefs_h

#include <RTI/Enums.h>
#include <RTI/Handle.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace rti1516e {
typedef std::set<AttributeHandle> AttributeHandleSet;
typedef std::set<ParameterHandle> ParameterHandleSet;
typedef std::set<FederateHandle> FederateHandleSet;
typedef std::set<DimensionHandle> DimensionHandleSet;
typedef std::set<RegionHandle> RegionHandleSet;

typedef std::map<AttributeHandle, VariableLengthData> AttributeHandleValueMap;
typedef std::map<ParameterHandle, VariableLengthData> ParameterHandleValueMap;

typedef std::pair<AttributeHandleSet, RegionHandleSet> AttributeHandleSetRegionHandleSetPair;
typedef std::vector<AttributeHandleSetRegionHandleSetPair>
    AttributeHandleSetRegionHandleSetPairVector;

typedef std::pair<FederateHandle, SaveStatus> FederateHandleSaveStatusPair;
typedef std::vector<FederateHandleSaveStatusPair> FederateHandleSaveStatusPairVector;

// A federate's handle before and after a restore, and how far its restore is.
class RTI_EXPORT FederateRestoreStatus {
 public:
  FederateRestoreStatus(FederateHandle const& thePreHandle, FederateHandle const& thePostHandle,
                        RestoreStatus theStatus);
  FederateHandle preRestoreHandle;
  FederateHandle postRestoreHandle;
  RestoreStatus status;
};
typedef std::vector<FederateRestoreStatus> FederateRestoreStatusVector;

// One federation execution as listFederationExecutions reports it.
class RTI_EXPORT FederationExecutionInformation {
 public:
  FederationExecutionInformation(std::wstring const& theFederationExecutionName,
                                 std::wstring const& theLogicalTimeImplementationName);
  std::wstring federationExecutionName;
  std::wstring logicalTimeImplementationName;
};
typedef std::vector<FederationExecutionInformation> FederationExecutionInformationVector;

// What a reflection tells besides the values: who sent it and in which regions, when the
// corresponding switches are on (this RTI sets neither).
class RTI_EXPORT SupplementalReflectInfo {
 public:
  SupplementalReflectInfo();
  explicit SupplementalReflectInfo(FederateHandle const& theFederateHandle);
  explicit SupplementalReflectInfo(RegionHandleSet const& theRegionHandleSet);
  SupplementalReflectInfo(FederateHandle const& theFederateHandle,
                          RegionHandleSet const& theRegionHandleSet);
  bool hasProducingFederate;
  bool hasSentRegions;
  FederateHandle producingFederate;
  RegionHandleSet sentRegions;
};

// The same for a received interaction.
class RTI_EXPORT SupplementalReceiveInfo {
 public:
  SupplementalReceiveInfo();
  explicit SupplementalReceiveInfo(FederateHandle const& theFederateHandle);
  explicit SupplementalReceiveInfo(RegionHandleSet const& theRegionHandleSet);
  SupplementalReceiveInfo(FederateHandle const& theFederateHandle,
                          RegionHandleSet const& theRegionHandleSet);
  bool hasProducingFederate;
  bool hasSentRegions;
  FederateHandle producingFederate;
  RegionHandleSet sentRegions;
};

// The same for a removal.
class RTI_EXPORT SupplementalRemoveInfo {
 public:
  SupplementalRemoveInfo();
  explicit SupplementalRemoveInfo(FederateHandle const& theFederateHandle);
  bool hasProducingFederate;
  FederateHandle producingFederate;
};
}  // namespace rti1516e

#endif
