#pragma once

#include <string>

// The text that a body throws; "nothing thrown" where it doesn't.
template<typename Body>
std::string thrownBy(const Body& body) {
    try {
        body();
    } catch (const std::string& text) {
        return text;
    }
    return "nothing thrown";
}
