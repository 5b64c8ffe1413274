#pragma once

#include <OrvComtradeIntake/Finding.h>

#include <cstddef>

namespace OrvComtradeIntake {

/// Kinds of findings, in the order of the table behind `catalogue`.
enum class Kind : std::size_t {
    // Files
    NoSuchFile,
    NotARecording,
    NoConfiguration,
    EmptyConfiguration,
    NoPermission,
    NotAFile,
    FileChanged,
    Unreadable,
    NoData,
    NoSamples,
    AmbiguousCompanion,
    SectionHeading,
    SectionLength,
    Base64,
    LimitExceeded,
    FindingsLeftOut,
    // Texts
    LineEnds,
    ByteOrderMark,
    ControlCharacters,
    BlankLines,
    Encoding,
    DamagedText,
    Separators,
    Quotes,
    ExtraText,
    // Configuration
    Revision,
    Layout,
    Counts,
    UnknownCounts,
    CommaInText,
    DecimalComma,
    AmbiguousCommas,
    FieldEmpty,
    FieldMissing,
    FieldMalformed,
    ChannelNumbers,
    DateFormat,
    DateUnset,
    DateUnknown,
    TypeWord,
    Side,
    Ratio,
    RatesAsLengths,
    RateZero,
    TimeMultiplier,
    TriggerOutside,
    EmptyRate,
    TimeLines,
    // Data
    DataMismatch,
    RecordLayout,
    RecordPadding,
    UnusedBits,
    NumberJump,
    ShiftedRecords,
    SamplesLost,
    SampleCount,
    StrayBytes,
    RecordCut,
    StampsDisagree,
    StampBackwards,
    StampGap,
    StampConstant,
    StampMissing,
    NoTimes,
    StampWrap,
    StampRange,
    StampDecimals,
    ValueOutOfRange,
    InfiniteValues,
    AllZero,
    ConstantChannel,
    MissingValues,
    BadDataLine,
    ShortDataLine,
    EmptyDataField,
    StatusValue,
    Decimals,
    SurplusColumns,
    Count ///< number of kinds
};

/// What all findings of a kind have in common.
struct KindInfo {
    const char* code; ///< short name
    Severity severity;
    Rule rule;
    const char* clause;   ///< of IEEE C37.111-2013, or empty
    const char* expected; ///< what should be there, unless a Detail has something more precise
    const char* advice;   ///< what a person can do about it
};

const KindInfo& catalogue(Kind kind);

} // namespace OrvComtradeIntake
