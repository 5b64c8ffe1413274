#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradePicture/Source.h>

using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Selection;

namespace OrvComtradePicture {

Source sourceOf(const Opened& opened) {
    Source source{opened.header(), {}, {}};
    for (std::size_t i = 0; i < source.header.analog.size(); ++i) {
        source.analog.push_back({opened.unitOf(i), opened.sideOf(i)});
    }
    source.columns = [&opened](const Selection& selection, std::size_t most, const OnBlock& onBlock) {
        opened.columns(selection, most, onBlock);
    };
    return source;
}

} // namespace OrvComtradePicture
