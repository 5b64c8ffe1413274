#include "columnsObject.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <nanobind/ndarray.h>
#include <utility>
#include <vector>

namespace nb = nanobind;
using namespace OrvComtradeIntake;

namespace {

/// What the arrays show.
struct Held {
    Columns columns;
    std::vector<std::int64_t> changeSamples;
    std::vector<std::uint8_t> changeStates;
    std::vector<std::int64_t> changeEnds;
    std::vector<std::int64_t> missing;
};

void flattenStates(Held& held) {
    std::size_t count = 0;
    for (const std::vector<StateChange>& changes : held.columns.states) {
        count += changes.size();
    }
    held.changeSamples.reserve(count);
    held.changeStates.reserve(count);
    held.changeEnds.reserve(held.columns.states.size());
    for (std::vector<StateChange>& changes : held.columns.states) {
        for (const StateChange& change : changes) {
            held.changeSamples.push_back(static_cast<std::int64_t>(change.sample));
            held.changeStates.push_back(change.state ? 1 : 0);
        }
        held.changeEnds.push_back(static_cast<std::int64_t>(held.changeSamples.size()));
        std::vector<StateChange>().swap(changes);
    }
    for (const MissingRun& run : held.columns.missing) {
        held.missing.push_back(static_cast<std::int64_t>(run.channel));
        held.missing.push_back(static_cast<std::int64_t>(run.sample));
        held.missing.push_back(static_cast<std::int64_t>(run.count));
    }
}

template <class Number>
nb::object arrayOf(const Number* values, std::initializer_list<std::size_t> shape, nb::handle owner) {
    static const Number nothing{}; // an empty vector's address may be null
    return nb::cast(nb::ndarray<nb::numpy, const Number>(values != nullptr ? values : &nothing, shape, owner));
}

template <class Values> nb::object flatArrayOf(const Values& values, nb::handle owner) {
    return arrayOf(values.data(), {values.size()}, owner);
}

} // namespace

nb::dict columnsObject(Columns&& columns) {
    auto made = std::make_unique<Held>();
    made->columns = std::move(columns);
    flattenStates(*made);
    const Held& held = *made;
    const nb::capsule owner(made.release(), [](void* kept) noexcept { delete static_cast<Held*>(kept); });
    nb::dict object;
    object["first"] = held.columns.first;
    object["time"] = flatArrayOf(held.columns.time, owner);
    object["analog"] = arrayOf(held.columns.analog.data(), {held.columns.a.size(), held.columns.samples}, owner);
    object["a"] = flatArrayOf(held.columns.a, owner);
    object["b"] = flatArrayOf(held.columns.b, owner);
    object["change_samples"] = flatArrayOf(held.changeSamples, owner);
    object["change_states"] = flatArrayOf(held.changeStates, owner);
    object["change_ends"] = flatArrayOf(held.changeEnds, owner);
    object["missing"] = arrayOf(held.missing.data(), {held.missing.size() / 3, 3}, owner);
    return object;
}
