#pragma once

// The place for a leak report of a host that has one; it does nothing here.
void PrintLeaks();
