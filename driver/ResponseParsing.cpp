#include "driver/ResponseParsing.h"

#include "driver/Conversions.h"

namespace tarn4x {

namespace {

struct Marker {
    std::string_view Front;
    std::string_view Prefix;
};

// In the order of the tests. Both forms of the under-range marker reach the client as one.
constexpr Marker Markers[] = {{"<", "<"},         {">", ">"},       {"*", "*"},       {"---", "---"},
                              {"UNDER", "UNDER"}, {"UND", "UNDER"}, {"OVER", "OVER"}, {"NORF", "NORF"}};

}  // namespace

std::string ParsedAnswer::ParseResponse(std::string_view strAnswer) {
    Raw = strAnswer;
    Prefix.clear();
    Postfix.clear();
    auto s = strAnswer;
    if (s.starts_with('"')) s.remove_prefix(1);
    if (s.ends_with('"')) s.remove_suffix(1);
    for (const auto& marker : Markers) {
        if (!s.starts_with(marker.Front)) continue;
        Prefix = marker.Prefix;
        s.remove_prefix(marker.Front.size());
        break;
    }
    if (const auto remark = s.find('('); remark != std::string_view::npos) {
        Postfix = Trim(s.substr(remark));
        s = s.substr(0, remark);
    }
    s = Trim(s);
    if (Prefix.empty() && s.empty()) Prefix = "---";
    return std::string(s);
}

bool ParsedAnswer::ParseValuePair(std::string_view strAnswer) {
    const auto text = ParseResponse(strAnswer);
    const auto pieces = Split(text);
    if (pieces.empty()) return false;
    mdblPairFirst = LeadingNumber(Trim(pieces[0]));
    if (pieces.size() < 2) return false;
    mdblPairSecond = LeadingNumber(Trim(pieces[1]));
    return true;
}

}  // namespace tarn4x
