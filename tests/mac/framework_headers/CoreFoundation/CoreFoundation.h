// The part of CoreFoundation that the macOS back ends use, declared after its public documentation, so that they
// compile where there is no macOS. The fakes are in tests/mac/fakes.
#pragma once

extern "C" {

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned int UInt32;
typedef int SInt32;
typedef SInt32 OSStatus;
enum { noErr = 0 };

typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;

struct CFRange {
    CFIndex location;
    CFIndex length;
};
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct StandInAllocator* CFAllocatorRef;
typedef const struct StandInString* CFStringRef;
typedef const struct StandInBoolean* CFBooleanRef;
typedef const struct StandInNumber* CFNumberRef;
typedef const struct StandInArray* CFArrayRef;
typedef const struct StandInDictionary* CFDictionaryRef;
typedef struct StandInDictionary* CFMutableDictionaryRef;
typedef const struct StandInLocale* CFLocaleRef;
typedef struct StandInDateFormatter* CFDateFormatterRef;
typedef const struct StandInUrl* CFURLRef;

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeID CFGetTypeID(CFTypeRef object);
void CFRelease(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);

typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

CFStringRef fakeConstantString(const char* text);
#define CFSTR(text) fakeConstantString("" text "")

CFTypeID CFStringGetTypeID();
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex byteCount,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex bufferSize, CFIndex* usedSize);

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

typedef CFIndex CFNumberType;
enum : CFNumberType { kCFNumberIntType = 9 };
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

extern const CFStringRef kCFPreferencesCurrentApplication;

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application);
Boolean CFPreferencesAppSynchronize(CFStringRef application);

CFLocaleRef CFLocaleCopyCurrent();

typedef CFIndex CFDateFormatterStyle;
enum : CFDateFormatterStyle { kCFDateFormatterNoStyle = 0 };

CFAbsoluteTime CFAbsoluteTimeGetCurrent();
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);
void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef format);
CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime moment);

CFURLRef CFURLCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex byteCount,
                              CFStringEncoding encoding, CFURLRef base);

}  // extern "C"
