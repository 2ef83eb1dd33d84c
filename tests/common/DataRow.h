#pragma once
// Data tables whose column types are written once, for every suite.

#include <QTest>

#include <array>
#include <tuple>
#include <utility>

// The column types of a data table, written once: `using Case = Row<int, double>;`, then
// Case::addColumns() in the _data function and `const auto [count, value] = Case::fetch();`
// in the test.
template <typename... T>
struct Row
{
    static void addColumns() { addColumns(std::index_sequence_for<T...>()); }
    static std::tuple<T...> fetch() { return fetch(std::index_sequence_for<T...>()); }

private:
    // QtTest keeps the pointer to a column's name.
    static const char* name(std::size_t i)
    {
        static const std::array<const char*, 12> names{{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}};
        return names.at(i);
    }
    template <std::size_t... I>
    static void addColumns(std::index_sequence<I...>)
    {
        (QTest::addColumn<T>(name(I)), ...);
    }
    template <std::size_t... I>
    static std::tuple<T...> fetch(std::index_sequence<I...>)
    {
        return std::tuple<T...>(*static_cast<T*>(QTest::qData(name(I), qMetaTypeId<T>()))...);
    }
};
