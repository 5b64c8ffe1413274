// Where every member and every virtual function lies: what a host's compiler has built into the host. A change here
// asks for a new SOVERSION. The numbers are those of GCC's standard library on 64-bit x86; elsewhere nothing is pinned
// and this is not built.

#include "AnalogChannel.h"
#include "AnalogChannelConfig.h"
#include "BaseChannel.h"
#include "BaseChannelConfig.h"
#include "BinaryChannel.h"
#include "BinaryChannelConfig.h"
#include "Cfg.h"
#include "Comtrade.h"
#include "Converters.h"
#include "Dat.h"
#include "FilesHelper.h"
#include "Sample.h"
#include "SamplingRate.h"
#include "StringHelper.h"
#include "toUtf8.h"

#include <OrvCommon.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <link.h>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

using namespace OrvComtradeLib;

// The standard leaves offsetof of a class with a base or a virtual function to the compiler; these two give it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

// What the sizes below are made of: text 32, list 24, list of bits 40.
static_assert(sizeof(std::string) == 32 && sizeof(std::vector<int>) == 24 && sizeof(std::vector<bool>) == 40);

static_assert(sizeof(Orv::PointF) == 8 && alignof(Orv::PointF) == 4);
static_assert(offsetof(Orv::PointF, x) == 0);
static_assert(offsetof(Orv::PointF, y) == 4);

static_assert(sizeof(Converters) == 1 && sizeof(FilesHelper) == 1 && sizeof(StringHelper) == 1);

static_assert(sizeof(toUtf8::DetectRusCodePages) == 16 && alignof(toUtf8::DetectRusCodePages) == 4);
static_assert(offsetof(toUtf8::DetectRusCodePages, cp866Count) == 0);
static_assert(offsetof(toUtf8::DetectRusCodePages, cp1251Count) == 4);
static_assert(offsetof(toUtf8::DetectRusCodePages, utf8Count) == 8);
static_assert(offsetof(toUtf8::DetectRusCodePages, utf8MaxRun) == 12);

static_assert(sizeof(BaseChannelConfig) == 112 && alignof(BaseChannelConfig) == 8);
static_assert(offsetof(BaseChannelConfig, index) == 8);
static_assert(offsetof(BaseChannelConfig, channelId) == 16);
static_assert(offsetof(BaseChannelConfig, phase) == 48);
static_assert(offsetof(BaseChannelConfig, circuitComponent) == 80);

static_assert(sizeof(AnalogChannelConfig) == 216 && alignof(AnalogChannelConfig) == 8);
static_assert(offsetof(AnalogChannelConfig, index) == 8);
static_assert(offsetof(AnalogChannelConfig, unit) == 112);
static_assert(offsetof(AnalogChannelConfig, unitMultiplier) == 144);
static_assert(offsetof(AnalogChannelConfig, a) == 152);
static_assert(offsetof(AnalogChannelConfig, b) == 160);
static_assert(offsetof(AnalogChannelConfig, skew) == 168);
static_assert(offsetof(AnalogChannelConfig, min) == 176);
static_assert(offsetof(AnalogChannelConfig, max) == 184);
static_assert(offsetof(AnalogChannelConfig, primary) == 192);
static_assert(offsetof(AnalogChannelConfig, secondary) == 200);
static_assert(offsetof(AnalogChannelConfig, secondaryValues) == 208);

static_assert(sizeof(BinaryChannelConfig) == 120 && alignof(BinaryChannelConfig) == 8);
static_assert(offsetof(BinaryChannelConfig, index) == 8);
static_assert(offsetof(BinaryChannelConfig, normalState) == 112);

static_assert(sizeof(SamplingRate) == 16 && alignof(SamplingRate) == 8);
static_assert(offsetof(SamplingRate, rate) == 0);
static_assert(offsetof(SamplingRate, endSample) == 8);

static_assert(sizeof(Cfg) == 248 && alignof(Cfg) == 8);
static_assert(offsetof(Cfg, stationName) == 0);
static_assert(offsetof(Cfg, recorderId) == 32);
static_assert(offsetof(Cfg, revisionYear) == 64);
static_assert(offsetof(Cfg, totalChannelCount) == 68);
static_assert(offsetof(Cfg, analogChannelCount) == 72);
static_assert(offsetof(Cfg, binaryChannelCount) == 76);
static_assert(offsetof(Cfg, lineFrequency) == 80);
static_assert(offsetof(Cfg, analogChannelConfigs) == 88);
static_assert(offsetof(Cfg, binaryChannelConfigs) == 112);
static_assert(offsetof(Cfg, samplingRates) == 136);
static_assert(offsetof(Cfg, lastSampleNumber) == 160);
static_assert(offsetof(Cfg, samplingRateKnown) == 168);
static_assert(offsetof(Cfg, dataFileType) == 172);
static_assert(offsetof(Cfg, analogValueLength) == 176);
static_assert(offsetof(Cfg, analogValuesLength) == 180);
static_assert(offsetof(Cfg, statusWordCount) == 184);
static_assert(offsetof(Cfg, statusWordsLength) == 188);
static_assert(offsetof(Cfg, recordLength) == 192);
static_assert(offsetof(Cfg, timeMultiplier) == 200);
static_assert(offsetof(Cfg, currentLine) == 208);
static_assert(offsetof(Cfg, duration) == 240);

static_assert(sizeof(Sample) == 88 && alignof(Sample) == 8);
static_assert(offsetof(Sample, index) == 0);
static_assert(offsetof(Sample, time) == 8);
static_assert(offsetof(Sample, analogValues) == 16);
static_assert(offsetof(Sample, binaryValues) == 40);
static_assert(offsetof(Sample, cfg) == 80);

static_assert(sizeof(Dat) == 40 && alignof(Dat) == 8);
static_assert(offsetof(Dat, cfg) == 0);
static_assert(offsetof(Dat, lastSampleTime) == 8);
static_assert(offsetof(Dat, samples) == 16);

static_assert(sizeof(BaseChannel) == 24 && alignof(BaseChannel) == 8);
static_assert(offsetof(BaseChannel, samples) == 8);
static_assert(offsetof(BaseChannel, config) == 16);

static_assert(sizeof(AnalogChannel) == 32 && alignof(AnalogChannel) == 8);
static_assert(offsetof(AnalogChannel, samples) == 8);
static_assert(offsetof(AnalogChannel, config) == 16);
static_assert(offsetof(AnalogChannel, skew) == 24);

static_assert(sizeof(BinaryChannel) == 144 && alignof(BinaryChannel) == 8);
static_assert(offsetof(BinaryChannel, samples) == 8);
static_assert(offsetof(BinaryChannel, config) == 16);
static_assert(offsetof(BinaryChannel, binaryConfig) == 24);

static_assert(sizeof(Comtrade) == 448 && alignof(Comtrade) == 8);
static_assert(offsetof(Comtrade, filePath) == 0);
static_assert(offsetof(Comtrade, duration) == 32);
static_assert(offsetof(Comtrade, enabled) == 40);
static_assert(offsetof(Comtrade, loaded) == 41);
static_assert(offsetof(Comtrade, cfgFileName) == 48);
static_assert(offsetof(Comtrade, datFileName) == 80);
static_assert(offsetof(Comtrade, cfg) == 112);
static_assert(offsetof(Comtrade, dat) == 360);
static_assert(offsetof(Comtrade, analogChannels) == 400);
static_assert(offsetof(Comtrade, binaryChannels) == 424);

#pragma GCC diagnostic pop

namespace {

using Slots = std::vector<std::string>;

/// "Class::operation" of a mangled name, without the library's namespace and the parameters.
std::string operationName(const char* mangled) {
    const std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(mangled, nullptr, nullptr, nullptr),
                                                           std::free);
    const std::string whole = demangled ? demangled.get() : mangled;
    const std::string space = "OrvComtradeLib::";
    const std::size_t begin = whole.compare(0, space.size(), space) == 0 ? space.size() : 0;
    return whole.substr(begin, whole.find_first_of("([") - begin);
}

/// The functions in the slots of a class's table, as the shared library holds it. Two words stand before the first
/// slot: the distance to the top of the object, and the type information.
template <class Class> Slots slots() {
    const std::string tableName = std::string("_ZTV") + typeid(Class).name();
    const auto* const table = static_cast<const void* const*>(dlsym(RTLD_DEFAULT, tableName.c_str()));
    Dl_info info{};
    void* symbol = nullptr;
    if (table == nullptr || dladdr1(table, &info, &symbol, RTLD_DL_SYMENT) == 0 || symbol == nullptr) {
        return {};
    }
    const std::size_t words = static_cast<const ElfW(Sym)*>(symbol)->st_size / sizeof(void*);
    Slots names;
    for (std::size_t i = 2; i < words; ++i) {
        Dl_info function{};
        const bool named = dladdr(table[i], &function) != 0 && function.dli_sname != nullptr;
        names.push_back(named ? operationName(function.dli_sname) : "unnamed");
    }
    return names;
}

} // namespace

// A virtual destructor takes two slots.

TEST(VirtualSlots, BaseChannelConfig) {
    EXPECT_EQ(slots<BaseChannelConfig>(),
              (Slots{"BaseChannelConfig::~BaseChannelConfig", "BaseChannelConfig::~BaseChannelConfig",
                     "BaseChannelConfig::name", "BaseChannelConfig::channelInfo", "BaseChannelConfig::load"}));
}

TEST(VirtualSlots, AnalogChannelConfig) {
    EXPECT_EQ(slots<AnalogChannelConfig>(),
              (Slots{"AnalogChannelConfig::~AnalogChannelConfig", "AnalogChannelConfig::~AnalogChannelConfig",
                     "AnalogChannelConfig::name", "AnalogChannelConfig::channelInfo", "AnalogChannelConfig::load"}));
}

TEST(VirtualSlots, BinaryChannelConfigKeepsTheNameOfItsBase) {
    EXPECT_EQ(slots<BinaryChannelConfig>(),
              (Slots{"BinaryChannelConfig::~BinaryChannelConfig", "BinaryChannelConfig::~BinaryChannelConfig",
                     "BaseChannelConfig::name", "BinaryChannelConfig::channelInfo", "BinaryChannelConfig::load"}));
}

// Whether the destructors of a class without objects have an address is the compiler's affair.
TEST(VirtualSlots, BaseChannelLeavesGetPointsOpen) {
    const Slots all = slots<BaseChannel>();
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all.at(2), "__cxa_pure_virtual");
}

TEST(VirtualSlots, AnalogChannel) {
    EXPECT_EQ(slots<AnalogChannel>(),
              (Slots{"AnalogChannel::~AnalogChannel", "AnalogChannel::~AnalogChannel", "AnalogChannel::getPoints"}));
}

TEST(VirtualSlots, BinaryChannel) {
    EXPECT_EQ(slots<BinaryChannel>(),
              (Slots{"BinaryChannel::~BinaryChannel", "BinaryChannel::~BinaryChannel", "BinaryChannel::getPoints"}));
}
