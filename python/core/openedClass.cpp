#include "openedClass.h"

#include "columnsObject.h"
#include "headerObject.h"
#include "pages.h"
#include "pictures.h"
#include "points.h"
#include "sink.h"
#include "text.h"

#include <OrvComtradeIntake/Intake.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/shared_ptr.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nb = nanobind;
using namespace OrvComtradeIntake;

namespace {

using Doubles = nb::ndarray<const double, nb::ndim<1>, nb::c_contig, nb::device::cpu>;

/// A recording, with the bytes that it was made of, if any.
struct PyOpened {
    Opened opened;
    std::vector<nb::object> kept;
};

Side sideOf(const std::string& name) {
    if (name == "recorded") {
        return Side::Recorded;
    }
    if (name == "primary") {
        return Side::Primary;
    }
    if (name == "secondary") {
        return Side::Secondary;
    }
    throw std::invalid_argument("side is \"recorded\", \"primary\" or \"secondary\", not \"" + name + "\"");
}

Options optionsOf(const std::string& side, const std::string& encoding, bool acceptsAnyNumbers,
                  const std::shared_ptr<Folders>& folders) {
    Options options;
    options.side = sideOf(side);
    options.encoding = encoding;
    options.acceptsAnyNumbers = acceptsAnyNumbers;
    options.folders = folders;
    return options;
}

PyOpened openPath(const nb::bytes& path, const std::string& side, const std::string& encoding, bool acceptsAnyNumbers,
                  const std::shared_ptr<Folders>& folders) {
    const std::string name(path.c_str(), path.size());
    const Options options = optionsOf(side, encoding, acceptsAnyNumbers, folders);
    const nb::gil_scoped_release others;
    return {open(name, options), {}};
}

std::string_view viewOf(const std::optional<nb::bytes>& bytes) {
    return bytes ? std::string_view(bytes->c_str(), bytes->size()) : std::string_view();
}

PyOpened openBytes(const nb::bytes& cfg, const std::optional<nb::bytes>& dat, const std::optional<nb::bytes>& hdr,
                   const std::optional<nb::bytes>& inf, const nb::bytes& name, const std::string& side,
                   const std::string& encoding, bool acceptsAnyNumbers) {
    const Bytes bytes{{cfg.c_str(), cfg.size()}, viewOf(dat), viewOf(hdr), viewOf(inf), {name.c_str(), name.size()}};
    const Options options = optionsOf(side, encoding, acceptsAnyNumbers, nullptr);
    std::vector<nb::object> kept{cfg};
    if (dat) {
        kept.emplace_back(*dat);
    }
    std::optional<Opened> opened;
    {
        const nb::gil_scoped_release others;
        opened.emplace(open(bytes, options));
    }
    return {std::move(*opened), std::move(kept)};
}

/// Positions of channels; none: all of them.
using Channels = std::optional<std::vector<std::size_t>>;

Selection selectionOf(const Channels& analog, const Channels& status, std::uint64_t first,
                      std::optional<std::uint64_t> count) {
    Selection selection;
    selection.allAnalog = !analog;
    selection.allStatus = !status;
    selection.analog = analog.value_or(std::vector<std::size_t>());
    selection.status = status.value_or(std::vector<std::size_t>());
    selection.first = first;
    selection.count = count.value_or(std::numeric_limits<std::uint64_t>::max());
    return selection;
}

nb::dict columnsOf(const PyOpened& self, const Channels& analog, const Channels& status, std::uint64_t first,
                   std::optional<std::uint64_t> count, bool raw, bool missingAsNan) {
    Selection selection = selectionOf(analog, status, first, count);
    selection.raw = raw;
    selection.missingAsNan = missingAsNan;
    Columns columns;
    {
        const nb::gil_scoped_release others;
        columns = self.opened.columns(selection);
    }
    return columnsObject(std::move(columns));
}

DataType dataTypeOf(const std::string& word) {
    for (const DataType type : {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32}) {
        if (word == typeWord(type)) {
            return type;
        }
    }
    throw std::invalid_argument("data_type is \"ASCII\", \"BINARY\", \"BINARY32\" or \"FLOAT32\", not \"" + word +
                                "\"");
}

void writeTo(const PyOpened& self, const nb::callable& cfg, const nb::callable& dat, std::optional<int> revision,
             const std::optional<std::string>& dataType, const std::string& encoding, bool combined,
             const Channels& analog, const Channels& status, std::uint64_t first, std::optional<std::uint64_t> count) {
    Form form;
    form.selection = selectionOf(analog, status, first, count);
    form.revision = revision;
    if (dataType) {
        form.dataType = dataTypeOf(*dataType);
    }
    form.encoding = encoding;
    form.combined = combined;
    const Sink cfgSink = sinkInto(cfg);
    const Sink datSink = sinkInto(dat);
    const nb::gil_scoped_release others;
    self.opened.write(cfgSink, datSink, form);
}

nb::object interpolatedObject(const Doubles& times, const Doubles& values, double skew, const Doubles& wanted) {
    if (times.shape(0) != values.shape(0)) {
        throw std::invalid_argument("as many times as values");
    }
    auto given = std::make_unique<std::vector<double>>();
    {
        const nb::gil_scoped_release others;
        *given = interpolated(times.data(), values.data(), times.shape(0), skew, wanted.data(), wanted.shape(0));
    }
    std::vector<double>* const held = given.release();
    const nb::capsule owner(held, [](void* kept) noexcept { delete static_cast<std::vector<double>*>(kept); });
    return nb::cast(nb::ndarray<nb::numpy, double>(held->data(), {held->size()}, owner));
}

nb::object svgObject(const PyOpened& self, const Channels& analog, const Channels& status, std::optional<double> start,
                     std::optional<double> end, const std::string& relativeTo, const std::string& name, double width,
                     double height, const std::string& theme) {
    const PictureRequest request{analog, status, start, end, relativeTo, name, width, height, theme};
    std::string svg;
    {
        const nb::gil_scoped_release others;
        svg = svgOf(self.opened, request);
    }
    return textObject(svg);
}

} // namespace

void addOpenedClass(nb::module_& module) {
    nb::class_<Folders>(module, "Folders").def(nb::init<>());
    nb::class_<PyOpened> opened(module, "Opened");
    opened.def_prop_ro("readable", [](const PyOpened& self) { return self.opened.readable(); })
        .def_prop_ro("cfg_file", [](const PyOpened& self) { return pathObject(self.opened.cfgFile()); })
        .def_prop_ro("dat_file", [](const PyOpened& self) { return pathObject(self.opened.datFile()); })
        .def("findings", [](const PyOpened& self) { return findingsObject(self.opened); })
        .def("header", [](const PyOpened& self) { return headerObject(self.opened); })
        .def("columns", columnsOf, nb::kw_only(), nb::arg("analog") = nb::none(), nb::arg("status") = nb::none(),
             nb::arg("first") = 0, nb::arg("count") = nb::none(), nb::arg("raw") = false,
             nb::arg("missing_as_nan") = false)
        .def("write", writeTo, nb::arg("cfg"), nb::arg("dat"), nb::kw_only(), nb::arg("revision") = nb::none(),
             nb::arg("data_type") = nb::none(), nb::arg("encoding") = "", nb::arg("combined") = false,
             nb::arg("analog") = nb::none(), nb::arg("status") = nb::none(), nb::arg("first") = 0,
             nb::arg("count") = nb::none())
        .def(
            "page",
            [](const PyOpened& self, const nb::callable& write, const std::string& name, const std::string& verdict,
               const std::string& program) { writePageTo(self.opened, write, name, verdict, program); },
            nb::arg("write"), nb::arg("name"), nb::arg("verdict"), nb::arg("program"));
    opened.def("svg", svgObject, nb::kw_only(), nb::arg("analog") = nb::none(), nb::arg("status") = nb::none(),
               nb::arg("start") = nb::none(), nb::arg("end") = nb::none(), nb::arg("relative_to"), nb::arg("name"),
               nb::arg("width"), nb::arg("height"), nb::arg("theme"));
    module.def("open_path", openPath, nb::arg("path"), nb::kw_only(), nb::arg("side") = "recorded",
               nb::arg("encoding") = "", nb::arg("accept_any_numbers") = false, nb::arg("folders") = nb::none());
    module.def("open_bytes", openBytes, nb::arg("cfg"), nb::arg("dat") = nb::none(), nb::arg("hdr") = nb::none(),
               nb::arg("inf") = nb::none(), nb::kw_only(), nb::arg("name"), nb::arg("side") = "recorded",
               nb::arg("encoding") = "", nb::arg("accept_any_numbers") = false);
    module.def("interpolated", interpolatedObject, nb::arg("times"), nb::arg("values"), nb::arg("skew"),
               nb::arg("wanted"));
}
