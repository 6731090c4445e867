// Builds the rows of a member table.
//
// Kinds and directions come from the C++ signature; a row adds only what the signature cannot say:
// the published names, and which arguments may be left out. Row order is slot order: append, never
// reorder.
//
//   constexpr Row kRows[] = {
//       get<&ErrInfo::numberInfo>("numberInfo"),
//       method<&ErrInfo::writeLog>("writeLog", optional("sErrLogName")),
//   };
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <tuple>
#include <utility>

#include "component/arguments.h"
#include "veltgeneral/component.h"

namespace veltgeneral {

// A row as it is written.
struct Row {
  Member member{};
  std::array<Parameter, Member::kMaxParameters> parameters{};
  std::size_t parameterCount = 0;
};

// A table as it is kept, without room for parameters that no row has: the loader copies each page
// of a table when it puts in the addresses.
template <const auto& rows>
class MemberTable {
  static constexpr std::size_t kParameterCount = [] {
    std::size_t count = 0;
    for (const Row& row : rows) count += row.parameterCount;
    return count;
  }();

  static constexpr auto kParameters = [] {
    std::array<Parameter, kParameterCount> all{};
    auto end = all.begin();
    for (const Row& row : rows) {
      end = std::copy_n(row.parameters.begin(), row.parameterCount, end);
    }
    return all;
  }();

 public:
  static constexpr auto kMembers = [] {
    std::array<Member, std::size(rows)> all{};
    std::span<const Parameter> rest(kParameters);
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = rows[i].member;
      all[i].parameters = rest.first(rows[i].parameterCount);
      rest = rest.subspan(rows[i].parameterCount);
    }
    return all;
  }();
};

struct ParameterName {
  // NOLINTNEXTLINE(google-explicit-constructor): a row lists plain names
  constexpr ParameterName(const char* text) : name(text) {}
  constexpr ParameterName(const char* text, std::int32_t number)
      : name(text), optional(true), defaultNumber(number) {}
  std::string_view name;
  bool optional = false;
  std::int32_t defaultNumber = 0;
};

// `number` stands for an argument left out where the parameter is no variant.
constexpr ParameterName optional(const char* name, std::int32_t number = 0) {
  return {name, number};
}

template <class C, class R, class... A>
struct SignatureOf {
  using Instance = C;
  using Result = R;
  using Arguments = std::tuple<A...>;
  static constexpr std::size_t kCount = sizeof...(A);
};

template <class F>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> : SignatureOf<C, R, A...> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : SignatureOf<C, R, A...> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : SignatureOf<C, R, A...> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : SignatureOf<C, R, A...> {};

template <class R>
Variant toVariant(R&& result) {
  using Bare = std::remove_cvref_t<R>;
  if constexpr (std::is_same_v<Bare, ErrInfo>)
    return makeObject<ErrInfo>(std::forward<R>(result));
  else if constexpr (std::is_enum_v<Bare>)
    return static_cast<std::int32_t>(result);
  else if constexpr (std::is_same_v<Bare, TextView>)
    return Text(result);
  else
    return std::forward<R>(result);
}

template <auto F, std::size_t... I>
Variant invokeWith(void* instance, Variant* const* values, std::index_sequence<I...>) {
  using S = Signature<decltype(F)>;
  auto& object = *static_cast<typename S::Instance*>(instance);
  // Coerced from left to right, all before the member runs.
  std::tuple<Argument<std::tuple_element_t<I, typename S::Arguments>>...> arguments{*values[I]...};
  if constexpr (std::is_void_v<typename S::Result>) {
    (object.*F)(std::get<I>(arguments).get()...);
    (std::get<I>(arguments).writeBack(), ...);
    return Empty{};
  } else if constexpr (std::is_same_v<typename S::Result, Variant>) {
    Variant result = (object.*F)(std::get<I>(arguments).get()...);  // made where it is returned
    (std::get<I>(arguments).writeBack(), ...);
    return result;
  } else {
    Variant result = toVariant((object.*F)(std::get<I>(arguments).get()...));
    (std::get<I>(arguments).writeBack(), ...);
    return result;
  }
}

template <auto F>
Variant invokeMember(void* instance, Variant* const* values) {
  return invokeWith<F>(instance, values,
                       std::make_index_sequence<Signature<decltype(F)>::kCount>());
}

template <auto F>
constexpr Row memberRow(std::string_view name, CallKind kind,
                        std::initializer_list<ParameterName> names) {
  using S = Signature<decltype(F)>;
  Row row{.member = {.name = name,
                     .result = valueTypeOf<typename S::Result>(),
                     .invoke = &invokeMember<F>,
                     .kind = kind},
          .parameterCount = S::kCount};
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    ((row.parameters[I] =
          Parameter{.name = names.begin()[I].name,
                    .type = valueTypeOf<std::tuple_element_t<I, typename S::Arguments>>(),
                    .direction = directionOf<std::tuple_element_t<I, typename S::Arguments>>(),
                    .optional = names.begin()[I].optional,
                    .defaultNumber = names.begin()[I].defaultNumber}),
     ...);
  }
  (std::make_index_sequence<S::kCount>());
  return row;
}

template <auto F, class... Names>
constexpr Row method(std::string_view name, Names... names) {
  static_assert(sizeof...(Names) == Signature<decltype(F)>::kCount, "one name an argument");
  return memberRow<F>(name, CallKind::method, {ParameterName(names)...});
}

template <auto F>
constexpr Row get(std::string_view name) {
  static_assert(Signature<decltype(F)>::kCount == 0);
  return memberRow<F>(name, CallKind::propertyGet, {});
}

template <auto F>
constexpr Row put(std::string_view name) {
  static_assert(Signature<decltype(F)>::kCount == 1);
  return memberRow<F>(name, CallKind::propertyPut, {ParameterName("value")});
}

// A public field, as the two properties that read and assign it.
template <class C, class T>
constexpr C instanceOfField(T C::*);
template <class C, class T>
constexpr T typeOfField(T C::*);

template <auto F>
constexpr Row getField(std::string_view name) {
  return {.member = {.name = name,
                     .result = valueTypeOf<decltype(typeOfField(F))>(),
                     .invoke = [](void* instance, Variant* const*) -> Variant {
                       return static_cast<decltype(instanceOfField(F))*>(instance)->*F;
                     },
                     .kind = CallKind::propertyGet}};
}

template <auto F>
constexpr Row putField(std::string_view name) {
  using T = decltype(typeOfField(F));
  return {.member = {.name = name,
                     .result = {.isVoid = true},
                     .invoke = [](void* instance, Variant* const* values) -> Variant {
                       static_cast<decltype(instanceOfField(F))*>(instance)->*F =
                           coerceTo<T>(*values[0]);
                       return Empty{};
                     },
                     .kind = CallKind::propertyPut},
          .parameters = {Parameter{.name = "value", .type = valueTypeOf<T>()}},
          .parameterCount = 1};
}

}  // namespace veltgeneral
