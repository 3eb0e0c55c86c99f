// How the scripted recorder writes down what the library is expected to send.
#pragma once

#include <string>

#include "support/PascalString.h"

inline const std::string kDiscOne =
    "obj  {want=type 'Disc'; from=null; form=enum 'indx'; seld=long 00000001}";

inline std::string PropertyObject(const std::string& inCode, const std::string& inContainer) {
    return "obj  {want=type 'prop'; from=" + inContainer + "; form=enum 'prop'; seld=type '" +
           inCode + "'}";
}

inline std::string PropertyOfApplication(const std::string& inCode) {
    return PropertyObject(inCode, "null");
}

inline std::string PropertyOfDiscOne(const std::string& inCode) {
    return PropertyObject(inCode, kDiscOne);
}

inline std::string Direct(const std::string& inObject) {
    return "----=" + inObject;
}

// Every request is made with no transaction and waits for its answer.
inline std::string Sent(const std::string& inEvent, const std::string& inParameters = "") {
    return inEvent + " tran=0 reply=1" + (inParameters.empty() ? "" : " ") + inParameters;
}
