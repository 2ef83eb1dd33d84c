#pragma once
// A view that can be printed: it lays itself out on the printer's page.

class QPrinter;

class VwvIPrintable
{
public:
    virtual ~VwvIPrintable() = default;
    // False when the printer cannot be painted on.
    virtual bool print(QPrinter& printer) const = 0;
};
