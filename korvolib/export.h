// What leaves the library: symbols are hidden unless they carry KORVO_API. It says the same to those who build
// the library and to those who derive from its classes, so that a class has one vtable and one type everywhere.
#pragma once

#define KORVO_API __attribute__((visibility("default")))
