// The API as code written against the 2000 C++ API sees it, whichever RTI it is built
// against (the embedded one or another conforming RTI): enumerator values, declarations,
// members the libraries export, what each header brings in, and the time library's
// factory. Nothing here joins a federation.
#include "standard_api/single_headers.h"

#include <RTI/HLAfloat64Interval.h>
#include <RTI/HLAfloat64Time.h>
#include <RTI/HLAfloat64TimeFactory.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/RTIambassador.h>
#include <RTI/RangeBounds.h>
#include <RTI/VariableLengthData.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace rti1516;

namespace {

// A value stored or sent as a number must mean the same on every RTI.
TEST(StandardApi, EnumeratorsCountFromZero) {
  static_assert(RECEIVE == 0 && TIMESTAMP == 1);
  static_assert(RELIABLE == 0 && BEST_EFFORT == 1);
  static_assert(UNCONDITIONALLY_DIVEST_ATTRIBUTES == 0 && DELETE_OBJECTS == 1 &&
                CANCEL_PENDING_OWNERSHIP_ACQUISITIONS == 2 && DELETE_OBJECTS_THEN_DIVEST == 3 &&
                CANCEL_THEN_DELETE_THEN_DIVEST == 4 && NO_ACTION == 5);
  static_assert(RTI_UNABLE_TO_RESTORE == 0 && RTI_DETECTED_FAILURE_DURING_RESTORE == 3);
  static_assert(NO_RESTORE_IN_PROGRESS == 0 && FEDERATE_WAITING_FOR_FEDERATION_TO_RESTORE == 5);
  static_assert(RTI_UNABLE_TO_SAVE == 0 && SAVE_TIME_CANNOT_BE_HONORED == 4);
  static_assert(NO_SAVE_IN_PROGRESS == 0 && FEDERATE_WAITING_FOR_FEDERATION_TO_SAVE == 3);
  static_assert(FEDERATION_MANAGEMENT == 0 && DATA_DISTRIBUTION_MANAGEMENT == 5 &&
                SUPPORT_SERVICES == 6);
  static_assert(SYNCHRONIZATION_POINT_LABEL_NOT_UNIQUE == 0 &&
                SYNCHRONIZATION_SET_MEMBER_NOT_JOINED == 1);
  EXPECT_EQ(onlyEnumsBestEffort(), 1);
}

// Parameter types, constness and results as the API declares them: code that takes a
// member's address, or overrides it, depends on each.
TEST(StandardApi, MembersHaveTheirDeclaredTypes) {
  using std::wstring;
  static_assert(
      std::is_same_v<decltype(&RTIambassador::createFederationExecution),
                     void (RTIambassador::*)(wstring const&, wstring const&, wstring const&)>);
  static_assert(std::is_same_v<decltype(&RTIambassadorFactory::createRTIambassador),
                               RTI_UNIQUE_PTR<RTIambassador> (RTIambassadorFactory::*)(
                                   std::vector<wstring>&)>);
  static_assert(std::is_same_v<decltype(&LogicalTimeFactory::makeLogicalTime),
                               RTI_UNIQUE_PTR<LogicalTime> (LogicalTimeFactory::*)()>);
  static_assert(std::is_same_v<decltype(&LogicalTimeFactory::makeLogicalTimeInterval),
                               RTI_UNIQUE_PTR<LogicalTimeInterval> (LogicalTimeFactory::*)()>);
  static_assert(
      std::is_same_v<decltype(&LogicalTime::implementationName), wstring (LogicalTime::*)() const>);
  static_assert(std::is_same_v<decltype(&LogicalTimeInterval::implementationName),
                               wstring (LogicalTimeInterval::*)() const>);
  static_assert(
      std::is_same_v<decltype(&Exception::what), wstring (Exception::*)() const noexcept>);
  static_assert(
      std::is_same_v<decltype(&FederateHandle::isValid), bool (FederateHandle::*)() const>);
  static_assert(std::is_same_v<decltype(&ParameterHandle::operator<),
                               bool (ParameterHandle::*)(ParameterHandle const&) const>);
  static_assert(std::is_same_v<decltype(static_cast<unsigned long (AttributeHandle::*)(
                                            void*, unsigned long) const>(&AttributeHandle::encode)),
                               unsigned long (AttributeHandle::*)(void*, unsigned long) const>);
  static_assert(std::is_same_v<decltype(&VariableLengthData::data),
                               void const* (VariableLengthData::*)() const>);
  static_assert(std::is_same_v<decltype(&VariableLengthData::setDataPointer),
                               void (VariableLengthData::*)(void*, unsigned long)>);
  static_assert(std::is_same_v<decltype(&RangeBounds::getLowerBound),
                               unsigned long (RangeBounds::*)() const>);
  static_assert(
      std::is_same_v<decltype(&RangeBounds::setUpperBound), void (RangeBounds::*)(unsigned long)>);
  static_assert(
      std::is_same_v<decltype(&HLAfloat64Time::getTime), double (HLAfloat64Time::*)() const>);
  static_assert(std::is_same_v<decltype(&HLAfloat64Interval::getInterval),
                               double (HLAfloat64Interval::*)() const>);
  // The time classes live in the global namespace, derived from the API's abstract ones.
  static_assert(std::is_base_of_v<LogicalTime, ::HLAfloat64Time>);
  static_assert(std::is_base_of_v<LogicalTimeInterval, ::HLAfloat64Interval>);
  static_assert(std::is_base_of_v<LogicalTimeFactory, ::HLAfloat64TimeFactory>);
  // Abstract bases stay abstract; the ambassador is made by its factory only.
  static_assert(std::is_abstract_v<LogicalTime> && std::is_abstract_v<LogicalTimeFactory>);
  static_assert(!std::is_default_constructible_v<RTIambassador>);
  static_assert(std::is_default_constructible_v<NullFederateAmbassador>);
  SUCCEED();
}

// Members the API declares out of line are in the RTI's libraries, so code built against
// another RTI's headers links against them. The names are those the C++ ABI gives them;
// looked up in the whole process, they are found only if a library exports them (this
// program exports nothing).
TEST(StandardApi, OutOfLineMembersAreExportedByTheLibraries) {
  const char* const symbols[] = {
      "_ZN7rti151614FederateHandleC1Ev",         // FederateHandle()
      "_ZN7rti151614FederateHandleD1Ev",         // ~FederateHandle()
      "_ZN7rti151614FederateHandleC1ERKS0_",     // FederateHandle(FederateHandle const&)
      "_ZN7rti151614FederateHandleaSERKS0_",     // operator=
      "_ZNK7rti151614FederateHandle7isValidEv",  // isValid() const
      "_ZNK7rti151614FederateHandleeqERKS0_",    // operator== const
      "_ZNK7rti151614FederateHandleneERKS0_",    // operator!= const
      "_ZNK7rti151615ParameterHandleltERKS0_",   // operator< const
      "_ZNK7rti151622InteractionClassHandle13encodedLengthEv",
      "_ZNK7rti151622InteractionClassHandle6encodeEPvm",
      "_ZNK7rti151615AttributeHandle8toStringB5cxx11Ev",
      "_ZN7rti151611RangeBoundsC1Emm",
      "_ZNK7rti151611RangeBounds13getLowerBoundEv",
      "_ZNK7rti151611RangeBounds13getUpperBoundEv",
      "_ZN7rti151611RangeBounds13setLowerBoundEm",
      "_ZN7rti151611RangeBounds13setUpperBoundEm",
      "_ZNK7rti151618VariableLengthData4dataEv",
      "_ZNK7rti151618VariableLengthData4sizeEv",
      "_ZN7rti151618VariableLengthData14setDataPointerEPvm",
      "_ZN7rti151618VariableLengthData15takeDataPointerEPvm",
      "_ZN7rti151611LogicalTimeD2Ev",
      "_ZN7rti151618LogicalTimeFactoryD2Ev",
      ("_ZN7rti151625LogicalTimeFactoryFactory22makeLogicalTimeFactoryERKNSt7__cxx1112basic_"
       "stringIwSt11char_traitsIwESaIwEEE"),
      "_ZN21HLAfloat64TimeFactory23makeLogicalTimeIntervalEv",
      "_ZNK14HLAfloat64Time7getTimeEv",
      "_ZNK18HLAfloat64Interval11getIntervalEv",
  };
  // Keeps the time library loaded however the linker treats unused libraries.
  ASSERT_NE(LogicalTimeFactoryFactory::makeLogicalTimeFactory(L""), nullptr);
  for (const char* s : symbols) EXPECT_NE(dlsym(RTLD_DEFAULT, s), nullptr) << s;
}

TEST(StandardApi, EachHeaderCompilesOnItsOwn) {
  // What the text around the message is, is up to the RTI.
  EXPECT_NE(onlyExceptionThrowAndCatch().find(L"from one header"), std::wstring::npos);
  EXPECT_EQ(onlyHandleEncodeIntoNothing(), L"CouldNotEncode");
  EXPECT_EQ(onlyRangeBoundsUpper(), 43u);
  EXPECT_EQ(onlyVariableLengthDataSize(), 5u);
  EXPECT_EQ(onlyTypedefsSetSize(), 2u);
  EXPECT_TRUE(onlyLogicalTimeFactoryDefault());
  EXPECT_DOUBLE_EQ(onlyFloat64TimeSum(), 3.25);
  EXPECT_TRUE(onlyNullFederateAmbassadorMade());
  EXPECT_FALSE(onlyRti1516Name().empty());
}

// The default factory makes both kinds of value; its time and interval work together and
// travel as big-endian IEEE doubles.
TEST(StandardApi, TimeFactoryMakesTimesAndIntervals) {
  auto factory = LogicalTimeFactoryFactory::makeLogicalTimeFactory(L"");
  ASSERT_NE(factory, nullptr);
  auto named = LogicalTimeFactoryFactory::makeLogicalTimeFactory(L"HLAfloat64Time");
  ASSERT_NE(named, nullptr);
  EXPECT_EQ(LogicalTimeFactoryFactory::makeLogicalTimeFactory(L"NoSuchTime"), nullptr);

  auto time = factory->makeLogicalTime();
  auto interval = factory->makeLogicalTimeInterval();
  ASSERT_NE(time, nullptr);
  ASSERT_NE(interval, nullptr);
  EXPECT_TRUE(time->isInitial());
  EXPECT_TRUE(interval->isZero());
  EXPECT_EQ(time->implementationName(), L"HLAfloat64Time");
  EXPECT_EQ(interval->implementationName(), L"HLAfloat64Time");

  *time += HLAfloat64Interval(1.5);
  EXPECT_FALSE(time->isInitial());
  EXPECT_TRUE(*time == HLAfloat64Time(1.5));
  EXPECT_TRUE(*time > HLAfloat64Time(1.25));
  interval->setToDifference(*time, HLAfloat64Time(0.5));
  EXPECT_TRUE(*interval == HLAfloat64Interval(1.0));

  const unsigned char onePointFive[8] = {0x3F, 0xF8, 0, 0, 0, 0, 0, 0};
  ASSERT_EQ(time->encodedLength(), 8u);
  VariableLengthData encoded = time->encode();
  ASSERT_EQ(encoded.size(), 8u);
  EXPECT_EQ(std::memcmp(encoded.data(), onePointFive, 8), 0);
  unsigned char buffer[8] = {};
  EXPECT_EQ(time->encode(buffer, sizeof buffer), 8u);
  EXPECT_EQ(std::memcmp(buffer, onePointFive, 8), 0);
  EXPECT_THROW(time->encode(buffer, 7), CouldNotEncode);

  const unsigned char minusTwo[8] = {0xC0, 0, 0, 0, 0, 0, 0, 0};
  HLAfloat64Interval decoded;
  decoded.decode(VariableLengthData(minusTwo, 8));
  EXPECT_EQ(decoded.getInterval(), -2.0);
  EXPECT_THROW(decoded.decode(VariableLengthData(minusTwo, 4)), CouldNotDecode);
}

// Handles, bounds and byte runs as a federate uses them without any RTI call.
TEST(StandardApi, ValuesBehaveWithoutAnRti) {
  FederateHandle a, b;
  EXPECT_FALSE(a.isValid());
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a != b);
  EXPECT_FALSE(a < b);
  FederateHandle c(a);
  EXPECT_TRUE(c == a);
  unsigned char tiny[1];
  EXPECT_THROW(a.encode(tiny, 0), CouldNotEncode);

  RangeBounds copy(RangeBounds(7, 9));
  EXPECT_EQ(copy.getLowerBound(), 7u);
  EXPECT_EQ(copy.getUpperBound(), 9u);

  char bytes[3] = {'a', 'b', 'c'};
  VariableLengthData owned(bytes, sizeof bytes);
  VariableLengthData referring;
  referring.setDataPointer(bytes, sizeof bytes);
  bytes[0] = 'z';
  EXPECT_EQ(static_cast<const char*>(owned.data())[0], 'a');
  EXPECT_EQ(referring.size(), 3u);
#if VC_EMBEDDED_RTI
  // Ours, where other RTIs may copy: the bytes are referred to, not copied (the RTI hands
  // received values to callbacks that way), and bounds start at 0.
  EXPECT_EQ(referring.data(), static_cast<void const*>(bytes));
  EXPECT_EQ(RangeBounds().getLowerBound(), 0u);
  EXPECT_EQ(RangeBounds().getUpperBound(), 0u);
#endif
  VariableLengthData adopted;
  adopted.takeDataPointer(new char[2]{'x', 'y'}, 2);
  EXPECT_EQ(adopted.size(), 2u);
  EXPECT_EQ(static_cast<const char*>(adopted.data())[1], 'y');

  // Every exception is caught as Exception and says what it was given.
  try {
    throw CouldNotCreateLogicalTimeFactory(L"no such time");
  } catch (Exception const& e) {
    EXPECT_NE(e.what().find(L"no such time"), std::wstring::npos);
  }
}

}  // namespace
