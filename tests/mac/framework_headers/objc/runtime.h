// The few declarations of the Objective-C runtime that the product uses.
#pragma once

using id = struct objc_object*;
using Class = struct objc_class*;
using SEL = struct objc_selector*;
using BOOL = bool;
#define YES true
#define NO false

extern "C" {
Class objc_getClass(const char* name);
SEL sel_registerName(const char* name);
}
