#pragma once

#include <locale>
#include <string>

// As long as it lives, the process's C++ locale groups digits by threes: "1,234".
class GroupingLocale {
public:
    GroupingLocale() : m_earlier(std::locale::global(std::locale(std::locale::classic(), new Grouping))) {}
    ~GroupingLocale() { std::locale::global(m_earlier); }

    GroupingLocale(const GroupingLocale&) = delete;
    GroupingLocale& operator=(const GroupingLocale&) = delete;

private:
    class Grouping : public std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale m_earlier;
};
