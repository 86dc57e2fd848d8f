/// @file
/// Formatters of `uuid` and `Time`, for {fmt} where it is included before this header, and for `std::format` where the
/// standard library has it. Not part of `<Tarn/Tarn.h>`.
///
/// A format is the name of a text form and, behind a comma, what a text takes: `{}`, `{:short}`, `{:,>40}` and
/// `{:getTimeStr8,>30}`. A uuid is canonical, or `short` as `toShortString`. A time is as `isoText`, or by the name of
/// another layout.
#ifndef TARN_FORMAT_H_
#define TARN_FORMAT_H_

#include <array>
#include <string>
#include <string_view>
#include <version>

#if defined(__cpp_lib_format)
#include <format>
#endif

#include "Tarn/time/Time.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn::internal {

template <class Value>
struct TextForm {
  std::string_view name;
  std::string (*text)(const Value& value);
};

/// How a uuid is shown: `{}` canonical, `{:short}` as `toShortString` does.
inline constexpr std::array<TextForm<uuids::uuid>, 2> kUuidForms = {{
    {"", [](const uuids::uuid& id) { return id.string(); }},
    {"short", [](const uuids::uuid& id) { return id.toShortString(); }},
}};

/// How a time is shown: `{}` as `isoText` does, else by the name of a layout, such as `{:getTimeStr8}`.
inline constexpr std::array<TextForm<Time>, 12> kTimeForms = {{
    {"", [](const Time& time) { return isoText(time); }},
    {"isoText", [](const Time& time) { return isoText(time); }},
    {"getTimeStr", [](const Time& time) { return time.getTimeStr(); }},
    {"getTimeStr2", [](const Time& time) { return time.getTimeStr2(); }},
    {"getTimeStr3", [](const Time& time) { return time.getTimeStr3(); }},
    {"getTimeStr4", [](const Time& time) { return time.getTimeStr4(); }},
    {"getTimeStr5", [](const Time& time) { return time.getTimeStr5(); }},
    {"getTimeStr6", [](const Time& time) { return time.getTimeStr6(); }},
    {"getTimeStr7", [](const Time& time) { return time.getTimeStr7(); }},
    {"getTimeStr8", [](const Time& time) { return time.getTimeStr8(); }},
    {"getTimeStr9", [](const Time& time) { return time.getTimeStr9(); }},
    {"getIsoTimeStr", [](const Time& time) { return time.getIsoTimeStr(); }},
}};

constexpr const auto& textFormsOf(const uuids::uuid*) { return kUuidForms; }
constexpr const auto& textFormsOf(const Time*) { return kTimeForms; }

// The name of a form, and behind a comma what a string takes: `{:getTimeStr8,>30}`. `Base` formats a string view and
// `Error` is what its library throws.
template <class Value, class Base, class Error>
class TextFormatter : public Base {
 public:
  template <class Context>
  constexpr auto parse(Context& context) {
    auto at = context.begin();
    auto end = at;
    while (end != context.end() && *end != '}' && *end != ',') ++end;
    const std::string_view name(at, end);
    text_ = nullptr;
    for (const TextForm<Value>& form : textFormsOf(static_cast<const Value*>(nullptr))) {
      if (form.name == name) text_ = form.text;
    }
    if (text_ == nullptr) throw Error("no such text form");
    if (end != context.end() && *end == ',') ++end;
    context.advance_to(end);
    return Base::parse(context);
  }

  template <class Context>
  auto format(const Value& value, Context& context) const {
    return Base::format(text_(value), context);
  }

 private:
  // Without `parse`, as elements of ranges are formatted by some versions of {fmt}, the first form.
  std::string (*text_)(const Value& value) = textFormsOf(static_cast<const Value*>(nullptr))[0].text;
};

}  // namespace Tarn::internal

#if defined(FMT_VERSION)
template <>
struct fmt::formatter<Tarn::uuids::uuid>
    : Tarn::internal::TextFormatter<Tarn::uuids::uuid, fmt::formatter<std::string_view>, fmt::format_error> {};
template <>
struct fmt::formatter<Tarn::Time>
    : Tarn::internal::TextFormatter<Tarn::Time, fmt::formatter<std::string_view>, fmt::format_error> {};
#endif

#if defined(__cpp_lib_format)
template <>
struct std::formatter<Tarn::uuids::uuid>
    : Tarn::internal::TextFormatter<Tarn::uuids::uuid, std::formatter<std::string_view>, std::format_error> {};
template <>
struct std::formatter<Tarn::Time>
    : Tarn::internal::TextFormatter<Tarn::Time, std::formatter<std::string_view>, std::format_error> {};
#endif

#endif  // TARN_FORMAT_H_
