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
#include "Enums.h"
#include "FileExtensions.h"
#include "FilesHelper.h"
#include "Sample.h"
#include "SamplingRate.h"
#include "StringHelper.h"
#include "toUtf8.h"

#include <OrvCommon.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <ios>
#include <string>
#include <type_traits>
#include <vector>

using namespace OrvComtradeLib;

namespace {

using Text = std::string;
using Texts = std::vector<std::string>;
using Samples = std::vector<Sample>;
using Points = std::vector<Orv::PointF>;
using toUtf8::DetectRusCodePages;

/// Picks the overload of an operation that has exactly this signature; without one the call does not compile.
template <class Signature> constexpr bool has(Signature /*operation*/) {
    return true;
}

/// The same for a private operation: access is not checked where a template is instantiated explicitly.
template <class Signature, Signature operation> struct HasPrivate {};

template <class Class>
constexpr bool isPlainValue = std::is_copy_constructible_v<Class>&& std::is_copy_assignable_v<Class>&&
    std::is_move_constructible_v<Class>&& std::is_move_assignable_v<Class>;

// 32-bit int, 64-bit long: what the interface's types mean on this machine.
static_assert(sizeof(int) == 4 && sizeof(unsigned int) == 4 && sizeof(unsigned long) == 8);

// Enums
static_assert(std::is_enum_v<Enums::DataFileType> && std::is_enum_v<Enums::LoadResult>);
static_assert(std::is_same_v<std::underlying_type_t<Enums::DataFileType>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<Enums::LoadResult>, std::int32_t>);
static_assert(std::is_convertible_v<Enums::LoadResult, int>);
static_assert(std::is_same_v<decltype(Enums::Ascii), Enums::DataFileType>);
static_assert(Enums::Ascii == 0 && Enums::Binary == 1 && Enums::Binary32 == 2 && Enums::Float32 == 3);
static_assert(std::is_same_v<decltype(Enums::Ok), Enums::LoadResult>);
static_assert(Enums::Ok == 0 && Enums::NotComtradeFile == 1 && Enums::CfgFileNotFound == 2 &&
              Enums::CfgLoadError == 3 && Enums::CfgLoaded == 4 && Enums::DatFileNotFound == 5 &&
              Enums::DatLoadError == 6);

// File extensions
static_assert(std::is_same_v<decltype(cfgExtension), const std::string>);
static_assert(std::is_same_v<decltype(datExtension), const std::string>);
static_assert(std::is_same_v<decltype(cffExtension), const std::string>);

// StringHelper, Converters, FilesHelper: static operations and no state
static_assert(has<Texts (*)(const Text&, char)>(&StringHelper::split));
static_assert(has<Text (*)(char, const Texts&)>(&StringHelper::join));
static_assert(has<Text (*)(Text)>(&StringHelper::toLower));
static_assert(has<int (*)(const Text&)>(&StringHelper::toInt));
static_assert(std::is_empty_v<StringHelper>);

static_assert(has<Enums::DataFileType (*)(Text&)>(&Converters::toDataFileType));
static_assert(std::is_empty_v<Converters>);

static_assert(has<bool (*)(const Text&)>(&FilesHelper::isFileExist));
static_assert(has<Text (*)(const Text&)>(&FilesHelper::getFileExtension));
static_assert(has<Text (*)(const Text&)>(&FilesHelper::getfileNameWithoutExtension));
static_assert(has<bool (*)(const Text&)>(&FilesHelper::isCfgFile));
static_assert(has<bool (*)(const Text&)>(&FilesHelper::isDatFile));
static_assert(has<bool (*)(const Text&)>(&FilesHelper::isCffFile));
static_assert(has<bool (*)(const Text&)>(&FilesHelper::isComtradeFile));
static_assert(has<Text (*)(const Text&)>(&FilesHelper::cfgFileName));
static_assert(has<Text (*)(const Text&)>(&FilesHelper::datFileName));
static_assert(has<std::int64_t (*)(std::ifstream&)>(&FilesHelper::fileLenght));
static_assert(has<std::int64_t (*)(const Text&)>(&FilesHelper::fileLenght));
static_assert(std::is_empty_v<FilesHelper>);

// toUtf8
static_assert(has<Text (*)(const char*, std::size_t)>(&toUtf8::from866));
static_assert(has<Text (*)(const char*, std::size_t)>(&toUtf8::from1251));
static_assert(has<int (*)(const char*&)>(&toUtf8::isUtf8Seq));
static_assert(has<Text (*)(const Text&)>(&toUtf8::detectAndConvert));
static_assert(has<void (*)()>(&toUtf8::test));
static_assert(has<void (DetectRusCodePages::*)(const char*, std::size_t)>(&DetectRusCodePages::analize));
static_assert(has<Text (DetectRusCodePages::*)(const Text&, const char*, std::size_t) const>( //
    &DetectRusCodePages::convertSC));
static_assert(std::is_same_v<decltype(DetectRusCodePages::cp866Count), int>);
static_assert(std::is_same_v<decltype(DetectRusCodePages::cp1251Count), int>);
static_assert(std::is_same_v<decltype(DetectRusCodePages::utf8Count), int>);
static_assert(std::is_same_v<decltype(DetectRusCodePages::utf8MaxRun), int>);
static_assert(std::is_standard_layout_v<DetectRusCodePages>);
static_assert(std::is_default_constructible_v<DetectRusCodePages>);

// Platform library
static_assert(std::is_same_v<decltype(Orv::PointF::x), float> && std::is_same_v<decltype(Orv::PointF::y), float>);
static_assert(std::is_standard_layout_v<Orv::PointF>);
static_assert(has<bool (*)(const Text&)>(&Orv::fileExist));
static_assert(has<std::ifstream (*)(const Text&, std::ios_base::openmode)>(&Orv::openInputFileUTF8Name));

// BaseChannelConfig
static_assert(isPlainValue<BaseChannelConfig> && std::is_default_constructible_v<BaseChannelConfig>);
static_assert(std::is_polymorphic_v<BaseChannelConfig> && !std::is_abstract_v<BaseChannelConfig>);
static_assert(std::has_virtual_destructor_v<BaseChannelConfig>);
static_assert(std::is_same_v<decltype(BaseChannelConfig::index), int>);
static_assert(std::is_same_v<decltype(BaseChannelConfig::channelId), Text>);
static_assert(std::is_same_v<decltype(BaseChannelConfig::phase), Text>);
static_assert(std::is_same_v<decltype(BaseChannelConfig::circuitComponent), Text>);
static_assert(std::is_same_v<decltype(&BaseChannelConfig::name), Text (BaseChannelConfig::*)() const>);
static_assert(std::is_same_v<decltype(&BaseChannelConfig::channelInfo), Text (BaseChannelConfig::*)() const>);
static_assert(std::is_same_v<decltype(&BaseChannelConfig::load), void (BaseChannelConfig::*)(int, const Texts&, int)>);

// AnalogChannelConfig: the class in the type of a member pointer shows that the operation is overridden
static_assert(isPlainValue<AnalogChannelConfig> && !std::is_default_constructible_v<AnalogChannelConfig>);
static_assert(std::is_convertible_v<AnalogChannelConfig*, BaseChannelConfig*>);
static_assert(std::is_constructible_v<AnalogChannelConfig, int, bool, int>);
static_assert(std::is_constructible_v<AnalogChannelConfig, int, const Text&, int>);
static_assert(std::is_constructible_v<AnalogChannelConfig, int, const char (&)[5], int>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::unit), Text>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::unitMultiplier), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::a), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::b), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::skew), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::min), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::max), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::primary), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::secondary), double>);
static_assert(std::is_same_v<decltype(AnalogChannelConfig::secondaryValues), bool>);
static_assert(std::is_same_v<decltype(&AnalogChannelConfig::name), Text (AnalogChannelConfig::*)() const>);
static_assert(std::is_same_v<decltype(&AnalogChannelConfig::channelInfo), Text (AnalogChannelConfig::*)() const>);
static_assert(
    std::is_same_v<decltype(&AnalogChannelConfig::load), void (AnalogChannelConfig::*)(int, const Texts&, int)>);
static_assert(has<void (AnalogChannelConfig::*)(const Texts&, int)>(&AnalogChannelConfig::loadExtValues));
static_assert(has<double (AnalogChannelConfig::*)(Text)>(&AnalogChannelConfig::multiplicator));
static_assert(has<void (AnalogChannelConfig::*)(bool, int)>(&AnalogChannelConfig::setMinMax));
static_assert(has<double (AnalogChannelConfig::*)(const double&) const>(&AnalogChannelConfig::GetRealValue));

// BinaryChannelConfig: `name` is the base's
static_assert(isPlainValue<BinaryChannelConfig> && std::is_default_constructible_v<BinaryChannelConfig>);
static_assert(std::is_convertible_v<BinaryChannelConfig*, BaseChannelConfig*>);
static_assert(std::is_constructible_v<BinaryChannelConfig, int, const Text&, int>);
static_assert(!std::is_constructible_v<BinaryChannelConfig, int, bool, int>);
static_assert(std::is_same_v<decltype(BinaryChannelConfig::normalState), int>);
static_assert(std::is_same_v<decltype(&BinaryChannelConfig::name), Text (BaseChannelConfig::*)() const>);
static_assert(std::is_same_v<decltype(&BinaryChannelConfig::channelInfo), Text (BinaryChannelConfig::*)() const>);
static_assert(
    std::is_same_v<decltype(&BinaryChannelConfig::load), void (BinaryChannelConfig::*)(int, const Texts&, int)>);
static_assert(has<void (BinaryChannelConfig::*)(const Texts&, int)>(&BinaryChannelConfig::loadExtValues));

// SamplingRate
static_assert(isPlainValue<SamplingRate> && !std::is_default_constructible_v<SamplingRate>);
static_assert(std::is_constructible_v<SamplingRate, const Text&>);
static_assert(std::is_same_v<decltype(SamplingRate::rate), double>);
static_assert(std::is_same_v<decltype(SamplingRate::endSample), unsigned long>);
static_assert(std::is_standard_layout_v<SamplingRate>);
static_assert(has<double (SamplingRate::*)(unsigned long) const>(&SamplingRate::getDuration));

// Cfg
static_assert(isPlainValue<Cfg> && std::is_default_constructible_v<Cfg> && !std::is_polymorphic_v<Cfg>);
static_assert(std::is_same_v<decltype(Cfg::stationName), Text>);
static_assert(std::is_same_v<decltype(Cfg::recorderId), Text>);
static_assert(std::is_same_v<decltype(Cfg::revisionYear), int>);
static_assert(std::is_same_v<decltype(Cfg::totalChannelCount), int>);
static_assert(std::is_same_v<decltype(Cfg::analogChannelCount), int>);
static_assert(std::is_same_v<decltype(Cfg::binaryChannelCount), int>);
static_assert(std::is_same_v<decltype(Cfg::lineFrequency), double>);
static_assert(std::is_same_v<decltype(Cfg::analogChannelConfigs), std::vector<AnalogChannelConfig>>);
static_assert(std::is_same_v<decltype(Cfg::binaryChannelConfigs), std::vector<BinaryChannelConfig>>);
static_assert(std::is_same_v<decltype(Cfg::samplingRates), std::vector<SamplingRate>>);
static_assert(std::is_same_v<decltype(Cfg::lastSampleNumber), unsigned long>);
static_assert(std::is_same_v<decltype(Cfg::samplingRateKnown), bool>);
static_assert(std::is_same_v<decltype(Cfg::dataFileType), Enums::DataFileType>);
static_assert(std::is_same_v<decltype(Cfg::analogValueLength), unsigned int>);
static_assert(std::is_same_v<decltype(Cfg::analogValuesLength), unsigned int>);
static_assert(std::is_same_v<decltype(Cfg::statusWordCount), unsigned int>);
static_assert(std::is_same_v<decltype(Cfg::statusWordsLength), unsigned int>);
static_assert(std::is_same_v<decltype(Cfg::recordLength), unsigned int>);
static_assert(std::is_same_v<decltype(Cfg::timeMultiplier), double>);
static_assert(std::is_same_v<decltype(Cfg::currentLine), Text>);
static_assert(std::is_same_v<decltype(Cfg::duration), double>);
static_assert(has<int (Cfg::*)(const Text&)>(&Cfg::load));
static_assert(has<double (Cfg::*)(unsigned long) const>(&Cfg::timeFromSampleIndex));
using CfgStep = bool (Cfg::*)(std::ifstream&);
template struct HasPrivate<CfgStep, &Cfg::_loadSubstationData>;
template struct HasPrivate<CfgStep, &Cfg::_loadCounOfChannels>;
template struct HasPrivate<CfgStep, &Cfg::_loadAnalogChannelsInformation>;
template struct HasPrivate<CfgStep, &Cfg::_loadBinaryChannelsInformation>;
template struct HasPrivate<CfgStep, &Cfg::_loadFreqInformation>;
template struct HasPrivate<CfgStep, &Cfg::_loadSampleRatesInformation>;
template struct HasPrivate<CfgStep, &Cfg::_loadDateTimes>;
template struct HasPrivate<CfgStep, &Cfg::_loadDataFileType>;
template struct HasPrivate<void (Cfg::*)(std::ifstream&), &Cfg::_setTimeProcessTime>;
template struct HasPrivate<bool (Cfg::*)(const std::vector<SamplingRate>&), &Cfg::_isExistZeroFreqSample>;
template struct HasPrivate<unsigned int (Cfg::*)(Enums::DataFileType) const, &Cfg::_getAnalogChannelLenghtInDatFile>;
template struct HasPrivate<void (Cfg::*)(Enums::DataFileType), &Cfg::_setBinaryDatFileChannelLenght>;

// Sample: copied member by member, and a move is a copy
static_assert(std::is_copy_constructible_v<Sample> && std::is_move_constructible_v<Sample>);
static_assert(!std::is_nothrow_move_constructible_v<Sample>);
static_assert(!std::is_default_constructible_v<Sample> && !std::is_polymorphic_v<Sample>);
static_assert(std::is_constructible_v<Sample, const Cfg&>);
static_assert(std::is_same_v<decltype(Sample::index), unsigned long>);
static_assert(std::is_same_v<decltype(Sample::time), double>);
static_assert(std::is_same_v<decltype(Sample::analogValues), std::vector<double>>);
static_assert(std::is_same_v<decltype(Sample::binaryValues), std::vector<bool>>);
static_assert(std::is_same_v<decltype(Sample::cfg), const Cfg&>);
static_assert(has<bool (Sample::*)(const Text&, unsigned long)>(&Sample::load));
static_assert(has<bool (Sample::*)(char*, unsigned long)>(&Sample::load));
template struct HasPrivate<double (Sample::*)(unsigned int, unsigned long), &Sample::_getTime>;
template struct HasPrivate<bool (Sample::*)(char*), &Sample::_loadAnalogChannels>;
template struct HasPrivate<double (Sample::*)(char*, unsigned int), &Sample::_getAnalogChannelValue>;
template struct HasPrivate<double (Sample::*)(char*, unsigned int), &Sample::_getDoubleChannelValue>;
template struct HasPrivate<bool (Sample::*)(char*), &Sample::_loadBinaryChannels>;
template struct HasPrivate<void (Sample::*)(char*, unsigned int), &Sample::_loadBinaryChannelsGroup>;

// Dat
static_assert(std::is_constructible_v<Dat, const Cfg&>);
static_assert(!std::is_default_constructible_v<Dat> && !std::is_polymorphic_v<Dat>);
static_assert(std::is_same_v<decltype(Dat::cfg), const Cfg&>);
static_assert(std::is_same_v<decltype(Dat::lastSampleTime), double>);
static_assert(std::is_same_v<decltype(Dat::samples), Samples>);
static_assert(has<int (Dat::*)(const Text&)>(&Dat::load));
template struct HasPrivate<int (Dat::*)(std::ifstream&), &Dat::_loadBinarySamles>;
template struct HasPrivate<int (Dat::*)(std::ifstream&), &Dat::_loadAsciiSamples>;

// BaseChannel
static_assert(std::is_abstract_v<BaseChannel> && std::has_virtual_destructor_v<BaseChannel>);
static_assert(std::is_same_v<decltype(BaseChannel::samples), const Samples&>);
static_assert(std::is_same_v<decltype(BaseChannel::config), BaseChannelConfig&>);
static_assert(std::is_same_v<decltype(&BaseChannel::name), Text (BaseChannel::*)() const>);
static_assert(std::is_same_v<decltype(&BaseChannel::getPoints), Points (BaseChannel::*)(double, double, double) const>);

// AnalogChannel
static_assert(std::is_convertible_v<AnalogChannel*, BaseChannel*>);
static_assert(std::is_constructible_v<AnalogChannel, AnalogChannelConfig&, const Samples&>);
static_assert(!std::is_constructible_v<AnalogChannel, const AnalogChannelConfig&, const Samples&>);
static_assert(!std::is_constructible_v<AnalogChannel, BinaryChannelConfig&, const Samples&>);
static_assert(std::is_copy_constructible_v<AnalogChannel>);
static_assert(std::is_same_v<decltype(AnalogChannel::skew), double>);
static_assert(has<Text (AnalogChannel::*)() const>(&AnalogChannel::phase));
static_assert(has<Text (AnalogChannel::*)() const>(&AnalogChannel::unit));
static_assert(has<bool (AnalogChannel::*)() const>(&AnalogChannel::isCurrent));
static_assert(has<double (AnalogChannel::*)(double, double, double, double, double) const>(
    &AnalogChannel::getInterpolationValue));
static_assert(has<double (AnalogChannel::*)(unsigned int, double) const>(&AnalogChannel::getInterpolationValue));
static_assert(has<double (AnalogChannel::*)(double, unsigned int&) const>(&AnalogChannel::getValue));
static_assert(has<double (AnalogChannel::*)(double) const>(&AnalogChannel::defaultSampleRate));
static_assert(
    std::is_same_v<decltype(&AnalogChannel::getPoints), Points (AnalogChannel::*)(double, double, double) const>);
static_assert(std::is_same_v<decltype(&AnalogChannel::name), Text (BaseChannel::*)() const>);

// BinaryChannel
static_assert(std::is_convertible_v<BinaryChannel*, BaseChannel*>);
static_assert(std::is_constructible_v<BinaryChannel, BinaryChannelConfig&, const Samples&>);
static_assert(!std::is_constructible_v<BinaryChannel, AnalogChannelConfig&, const Samples&>);
static_assert(std::is_copy_constructible_v<BinaryChannel>);
static_assert(std::is_same_v<decltype(BinaryChannel::binaryConfig), BinaryChannelConfig>);
static_assert(has<float (BinaryChannel::*)(bool) const>(&BinaryChannel::bool2Float));
static_assert(
    std::is_same_v<decltype(&BinaryChannel::getPoints), Points (BinaryChannel::*)(double, double, double) const>);
static_assert(std::is_same_v<decltype(&BinaryChannel::name), Text (BaseChannel::*)() const>);

// Comtrade: neither copied nor moved
static_assert(std::is_default_constructible_v<Comtrade> && !std::is_polymorphic_v<Comtrade>);
static_assert(!std::is_copy_constructible_v<Comtrade> && !std::is_copy_assignable_v<Comtrade>);
static_assert(!std::is_move_constructible_v<Comtrade> && !std::is_move_assignable_v<Comtrade>);
static_assert(std::is_same_v<decltype(Comtrade::filePath), Text>);
static_assert(std::is_same_v<decltype(Comtrade::duration), double>);
static_assert(std::is_same_v<decltype(Comtrade::enabled), bool>);
static_assert(std::is_same_v<decltype(Comtrade::loaded), bool>);
static_assert(std::is_same_v<decltype(Comtrade::cfgFileName), Text>);
static_assert(std::is_same_v<decltype(Comtrade::datFileName), Text>);
static_assert(std::is_same_v<decltype(Comtrade::cfg), Cfg>);
static_assert(std::is_same_v<decltype(Comtrade::dat), Dat>);
static_assert(std::is_same_v<decltype(Comtrade::analogChannels), std::vector<AnalogChannel>>);
static_assert(std::is_same_v<decltype(Comtrade::binaryChannels), std::vector<BinaryChannel>>);
static_assert(has<int (Comtrade::*)(const Text&)>(&Comtrade::load));
template struct HasPrivate<void (Comtrade::*)(const Text&), &Comtrade::_setCfgDatFileNames>;
template struct HasPrivate<int (Comtrade::*)(const Text&), &Comtrade::_loadCfgDat>;
template struct HasPrivate<void (Comtrade::*)(), &Comtrade::_initChannels>;
template struct HasPrivate<void (Comtrade::*)(), &Comtrade::_initAnalogChannels>;
template struct HasPrivate<void (Comtrade::*)(), &Comtrade::_initBinaryChannels>;

/// Whether every member lies behind the one before it.
template <class... Members> bool inThisOrder(const Members&... members) {
    const void* const addresses[] = {&members...};
    for (std::size_t i = 1; i < sizeof...(members); ++i)
        if (!std::less<const void*>()(addresses[i - 1], addresses[i]))
            return false;
    return true;
}

AnalogChannelConfig analogConfig() {
    return AnalogChannelConfig(0, false, 1999);
}

void expectDefaultsOfEveryChannel(const BaseChannelConfig& config, int index) {
    EXPECT_EQ(config.index, index);
    EXPECT_EQ(config.channelId, "");
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
}

void expectDefaults(const BinaryChannelConfig& config) {
    expectDefaultsOfEveryChannel(config, 0);
    EXPECT_EQ(config.normalState, 0);
}

} // namespace

TEST(MemberOrder, BaseChannelConfig) {
    const BaseChannelConfig config;
    EXPECT_TRUE(inThisOrder(config.index, config.channelId, config.phase, config.circuitComponent));
}

TEST(MemberOrder, AnalogChannelConfig) {
    const AnalogChannelConfig config = analogConfig();
    EXPECT_TRUE(inThisOrder(config.circuitComponent, config.unit, config.unitMultiplier, config.a, config.b,
                            config.skew, config.min, config.max, config.primary, config.secondary,
                            config.secondaryValues));
}

TEST(MemberOrder, BinaryChannelConfig) {
    const BinaryChannelConfig config;
    EXPECT_TRUE(inThisOrder(config.circuitComponent, config.normalState));
}

TEST(MemberOrder, Cfg) {
    const Cfg cfg;
    EXPECT_TRUE(inThisOrder(cfg.stationName, cfg.recorderId, cfg.revisionYear, cfg.totalChannelCount,
                            cfg.analogChannelCount, cfg.binaryChannelCount, cfg.lineFrequency, cfg.analogChannelConfigs,
                            cfg.binaryChannelConfigs, cfg.samplingRates, cfg.lastSampleNumber, cfg.samplingRateKnown,
                            cfg.dataFileType, cfg.analogValueLength, cfg.analogValuesLength, cfg.statusWordCount,
                            cfg.statusWordsLength, cfg.recordLength, cfg.timeMultiplier, cfg.currentLine,
                            cfg.duration));
}

TEST(MemberOrder, Sample) {
    const Cfg cfg;
    const Sample sample(cfg);
    EXPECT_TRUE(inThisOrder(sample.index, sample.time, sample.analogValues, sample.binaryValues));
}

TEST(MemberOrder, Dat) {
    const Cfg cfg;
    const Dat dat(cfg);
    EXPECT_TRUE(inThisOrder(dat.lastSampleTime, dat.samples));
}

TEST(MemberOrder, Comtrade) {
    const Comtrade comtrade;
    EXPECT_TRUE(inThisOrder(comtrade.filePath, comtrade.duration, comtrade.enabled, comtrade.loaded,
                            comtrade.cfgFileName, comtrade.datFileName, comtrade.cfg, comtrade.dat,
                            comtrade.analogChannels, comtrade.binaryChannels));
}

TEST(Defaults, Counters) {
    const DetectRusCodePages detector;
    EXPECT_EQ(detector.cp866Count, 0);
    EXPECT_EQ(detector.cp1251Count, 0);
    EXPECT_EQ(detector.utf8Count, 0);
    EXPECT_EQ(detector.utf8MaxRun, 0);
}

TEST(Defaults, BaseAndBinaryChannelConfig) {
    expectDefaultsOfEveryChannel(BaseChannelConfig(), 0);
    expectDefaults(BinaryChannelConfig());
}

TEST(Defaults, AnalogChannelConfig) {
    const AnalogChannelConfig analog(5, false, 1999);
    expectDefaultsOfEveryChannel(analog, 5);
    EXPECT_EQ(analog.unit, "V");
    EXPECT_EQ(analog.unitMultiplier, 1.0);
    EXPECT_EQ(analog.a, 1.0);
    EXPECT_EQ(analog.b, 0.0);
    EXPECT_EQ(analog.skew, 0.0);
    EXPECT_EQ(analog.min, -32767.0);
    EXPECT_EQ(analog.max, 32767.0);
    EXPECT_EQ(analog.primary, 1.0);
    EXPECT_EQ(analog.secondary, 1.0);
    EXPECT_TRUE(analog.secondaryValues);
}

TEST(Defaults, Cfg) {
    const Cfg cfg;
    EXPECT_EQ(cfg.stationName, "Station1");
    EXPECT_EQ(cfg.recorderId, "");
    EXPECT_EQ(cfg.revisionYear, 1999);
    EXPECT_EQ(cfg.totalChannelCount, 0);
    EXPECT_EQ(cfg.analogChannelCount, 0);
    EXPECT_EQ(cfg.binaryChannelCount, 0);
    EXPECT_EQ(cfg.lineFrequency, 50.0);
    EXPECT_TRUE(cfg.analogChannelConfigs.empty());
    EXPECT_TRUE(cfg.binaryChannelConfigs.empty());
    EXPECT_TRUE(cfg.samplingRates.empty());
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_TRUE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.dataFileType, 0);
    EXPECT_EQ(cfg.analogValueLength, 2U);
    EXPECT_EQ(cfg.analogValuesLength, 0U);
    EXPECT_EQ(cfg.statusWordCount, 0U);
    EXPECT_EQ(cfg.statusWordsLength, 0U);
    EXPECT_EQ(cfg.recordLength, 0U);
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.duration, 0.0);
}

TEST(Defaults, Sample) {
    const Cfg cfg;
    const Sample sample(cfg);
    EXPECT_EQ(sample.index, 0U);
    EXPECT_EQ(sample.time, 0.0);
    EXPECT_TRUE(sample.analogValues.empty());
    EXPECT_TRUE(sample.binaryValues.empty());
    EXPECT_EQ(&sample.cfg, &cfg);
}

TEST(Defaults, Dat) {
    const Cfg cfg;
    const Dat dat(cfg);
    EXPECT_EQ(&dat.cfg, &cfg);
    EXPECT_EQ(dat.lastSampleTime, -1.0);
    EXPECT_TRUE(dat.samples.empty());
}

TEST(Defaults, Views) {
    AnalogChannelConfig analogRecord = analogConfig();
    analogRecord.skew = 0.25;
    BinaryChannelConfig binaryRecord(7, "8,Trip,A,CB1,1", 1999);
    const Samples samples;
    const AnalogChannel analog(analogRecord, samples);
    EXPECT_EQ(&analog.samples, &samples);
    EXPECT_EQ(&analog.config, &analogRecord);
    EXPECT_EQ(analog.skew, 0.25);
    const BinaryChannel binary(binaryRecord, samples);
    EXPECT_EQ(&binary.samples, &samples);
    EXPECT_EQ(&binary.config, &binaryRecord);
    expectDefaults(binary.binaryConfig);
}

TEST(Defaults, Comtrade) {
    const Comtrade comtrade;
    EXPECT_EQ(comtrade.filePath, "");
    EXPECT_EQ(comtrade.duration, -1.0);
    EXPECT_TRUE(comtrade.enabled);
    EXPECT_FALSE(comtrade.loaded);
    EXPECT_EQ(comtrade.cfgFileName, "");
    EXPECT_EQ(comtrade.datFileName, "");
    EXPECT_EQ(comtrade.cfg.stationName, "Station1");
    EXPECT_EQ(&comtrade.dat.cfg, &comtrade.cfg);
    EXPECT_EQ(comtrade.dat.lastSampleTime, -1.0);
    EXPECT_TRUE(comtrade.analogChannels.empty());
    EXPECT_TRUE(comtrade.binaryChannels.empty());
}

TEST(Copies, OfAViewReferToTheSameRecordAndSamples) {
    AnalogChannelConfig record = analogConfig();
    const Samples samples;
    const AnalogChannel view(record, samples);
    const AnalogChannel copy(view);
    EXPECT_EQ(&copy.config, &record);
    EXPECT_EQ(&copy.samples, &samples);
}

TEST(Copies, OfASampleReferToTheSameConfiguration) {
    const Cfg cfg;
    Sample sample(cfg);
    sample.index = 3;
    sample.time = 0.5;
    sample.analogValues = {1.5};
    sample.binaryValues = {true};
    const Sample copy(sample);
    EXPECT_EQ(copy.index, 3U);
    EXPECT_EQ(copy.time, 0.5);
    EXPECT_EQ(copy.analogValues, std::vector<double>{1.5});
    EXPECT_EQ(copy.binaryValues, std::vector<bool>{true});
    EXPECT_EQ(&copy.cfg, &cfg);
}
