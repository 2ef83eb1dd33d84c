#pragma once
// A set of window kinds. APPLICATION names the windows the application owns and
// recreates (Reporter, messages, debug); USER, its complement, those the user opens.

#include <velmora_widget_export.h>

#include <KbbAFlags.h>
#include <VwwEWindowType.h>

#include <initializer_list>

class VELMORA_WIDGET_EXPORT VwwWindowTypeFlags : public KbbAFlags<VwwEWindowType>
{
public:
    static const VwwWindowTypeFlags NONE;
    static const VwwWindowTypeFlags ANY;
    static const VwwWindowTypeFlags APPLICATION;
    static const VwwWindowTypeFlags USER;

    VwwWindowTypeFlags();
    explicit VwwWindowTypeFlags(bool set);
    VwwWindowTypeFlags(const VwwEWindowType& type);
    VwwWindowTypeFlags(std::initializer_list<VwwEWindowType> types);
    VwwWindowTypeFlags(std::initializer_list<VwwWindowTypeFlags> sets);

    VwwWindowTypeFlags operator~() const;
};
