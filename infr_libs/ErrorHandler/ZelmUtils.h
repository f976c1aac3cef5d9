#pragma once

class AutoDefines;
class ErrorHandler;
class StringLibrary;

// The context that the infrastructure's classes pass around and keep a pointer to. Whoever makes the
// record owns it and the three objects; it is shared, never copied.
struct ZelmUtils {
    ErrorHandler* errorHandler = nullptr;   // every report goes through it
    StringLibrary* stringLibrary = nullptr; // made over the same handler
    AutoDefines* autoDefines = nullptr;     // null until a target is known
};
