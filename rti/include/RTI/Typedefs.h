#ifndef RTI_Typedefs_h
#define RTI_Typedefs_h

#include <RTI/Enums.h>
#include <RTI/Handle.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace rti1516 {
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

typedef std::pair<FederateHandle, RestoreStatus> FederateHandleRestoreStatusPair;
typedef std::vector<FederateHandleRestoreStatusPair> FederateHandleRestoreStatusPairVector;
}  // namespace rti1516

#endif
