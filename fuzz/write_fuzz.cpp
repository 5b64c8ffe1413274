// A recording (support/recordings.h), then 4 bytes that choose a form. In every form that there is, what is written
// opens to the same header and values, with no finding that is worse and new; the library alone reads its own form as
// `load` gives it; forms that there are not are refused; lack of memory leaves the recording as it was.

#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/AllocationBudget.h"
#include "support/ScratchFolder.h"
#include "support/recordings.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using namespace OrvComtradeIntake;

Form formBy(std::uint8_t choice, std::uint8_t encoding) {
    static constexpr int kRevisions[] = {0, 1991, 1999, 2013};
    static constexpr DataType kTypes[] = {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32};
    static constexpr const char* kEncodings[] = {"", "UTF-8", "GB18030", "UTF-16LE", "UTF-16", "CP1251", "ISO-8859-1"};
    Form form;
    if (choice % 4 != 0) {
        form.revision = kRevisions[choice % 4];
    }
    if (choice / 4 % 5 != 0) {
        form.dataType = kTypes[choice / 4 % 5 - 1];
    }
    form.combined = choice / 20 % 2 != 0;
    form.encoding = kEncodings[encoding % 7];
    return form;
}

/// Whether the encoding has every character.
bool isForAnyText(const Form& form) {
    return form.encoding != "CP1251" && form.encoding != "ISO-8859-1";
}

void checkLackOfMemory(const Opened& opened, const Form& form, std::size_t failing) {
    try {
        const orvtest::AllocationBudget budget(failing, orvtest::Failing::Once);
        orvtest::writtenBy(opened, form);
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    fuzz::Input input(data, size);
    const fuzz::Files files(input);
    const std::uint8_t choice = input.u8();
    const std::uint8_t encoding = input.u8();
    const std::uint8_t failing = input.u8();
    const bool isForLibrary = input.u8() % 8 == 7;
    Options options = fuzz::optionsBy(fuzz::hashOf(files.cfg));
    options.encoding.clear();
    options.limits = {};
    const Form form = formBy(choice, encoding);
    if (form.revision == 1991) { // which has no place for the side
        options.side = Side::Recorded;
    }
    const Opened opened = open(files.bytes(), options);
    if (!opened.readable()) {
        FUZZ_CHECK(fuzz::throws<std::logic_error>([&] { orvtest::writtenBy(opened); }));
        return 0;
    }
    if (isForLibrary) {
        fuzz::expectNothing(orvtest::firstBrokenLibraryForm(opened, folder.path()));
        return 0;
    }
    try {
        checkLackOfMemory(opened, form, failing * std::size_t{4});
        if (isForAnyText(form)) {
            fuzz::expectNothing(orvtest::firstBrokenForm(opened, options, form));
        } else {
            orvtest::writtenBy(opened, form);
        }
    } catch (const std::invalid_argument&) {
        const bool isNewType = form.dataType == DataType::Binary32 || form.dataType == DataType::Float32;
        const bool isRefused =
            (isNewType && form.revision != 2013) || (form.combined && form.encoding.substr(0, 6) == "UTF-16");
        FUZZ_CHECK(isRefused);
    }
    return 0;
}
