#pragma once

#include <exception>
#include <string>
#include <typeinfo>

namespace orvtest {

/// The text of the exception that `operation` throws, which must be of exactly the type `Exception`; otherwise a
/// sentence that equals no text of the standard library.
template <class Exception, class Operation> std::string whatOf(Operation operation) {
    try {
        operation();
    } catch (const Exception& thrown) {
        if (typeid(thrown) != typeid(Exception))
            return std::string("an exception of a derived type: ") + typeid(thrown).name();
        return thrown.what();
    } catch (const std::exception& thrown) {
        return std::string("an exception of another type: ") + typeid(thrown).name();
    }
    return "no exception at all";
}

} // namespace orvtest
