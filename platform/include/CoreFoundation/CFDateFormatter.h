// Dates and times as text, in the habits of a locale, and back.
//
// A formatter belongs to one thread at a time. It starts with the default time zone, is not lenient
// about what it reads, and takes a year of two digits for one from 1950 to 2049. Its pattern is
// written in the letters of Unicode's date formats ("yyyy-MM-dd HH:mm").
#ifndef COREFOUNDATION_CFDATEFORMATTER_H
#define COREFOUNDATION_CFDATEFORMATTER_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFLocale.h>

typedef struct __CFDateFormatter* CFDateFormatterRef;

// How much is shown. In en_US: 10/20/04 and 2:20 PM; Oct 20, 2004 and 2:20:00 PM; October 20, 2004
// and 2:20:00 PM PDT; Wednesday, October 20, 2004 and 2:20:00 PM PDT. Date and time are joined by a
// space.
typedef CFIndex CFDateFormatterStyle;
enum {
    kCFDateFormatterNoStyle = 0,
    kCFDateFormatterShortStyle = 1,
    kCFDateFormatterMediumStyle = 2,
    kCFDateFormatterLongStyle = 3,
    kCFDateFormatterFullStyle = 4
};

PLATFORM_DECLARATIONS_BEGIN

CFTypeID CFDateFormatterGetTypeID(void);

// A formatter for a locale (NULL: the root locale). With neither date nor time the pattern is
// empty, and so is every text. NULL for a style out of range.
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale,
                                         CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);

CFLocaleRef CFDateFormatterGetLocale(CFDateFormatterRef formatter);  // lent
CFDateFormatterStyle CFDateFormatterGetDateStyle(CFDateFormatterRef formatter);
CFDateFormatterStyle CFDateFormatterGetTimeStyle(CFDateFormatterRef formatter);

// The pattern, lent until another one is set; setting it leaves the styles as they were.
CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter);
void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef formatString);

// A date as text; to the nearest thousandth of a second. NULL for NULL and for a time that is not a
// number or beyond any calendar.
CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef allocator,
                                                CFDateFormatterRef formatter, CFDateRef date);
CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef allocator,
                                                        CFDateFormatterRef formatter,
                                                        CFAbsoluteTime at);

// The date that the text says from the start of a range on; *rangep (the whole text when NULL) then
// has the part that was read. NULL, or false with *atp untouched, where the text is no date of this
// pattern. atp may be NULL.
CFDateRef CFDateFormatterCreateDateFromString(CFAllocatorRef allocator,
                                              CFDateFormatterRef formatter, CFStringRef string,
                                              CFRange* rangep);
Boolean CFDateFormatterGetAbsoluteTimeFromString(CFDateFormatterRef formatter, CFStringRef string,
                                                 CFRange* rangep, CFAbsoluteTime* atp);

// Properties, by the keys below. Setting one to a value of another type, or one that can only be
// read, changes nothing; NULL puts a symbol list back to the locale's. A copy is NULL for a key
// that says nothing.
void CFDateFormatterSetProperty(CFDateFormatterRef formatter, CFStringRef key, CFTypeRef value);
CFTypeRef CFDateFormatterCopyProperty(CFDateFormatterRef formatter, CFStringRef key);

extern const CFStringRef kCFDateFormatterIsLenient;          // CFBoolean
extern const CFStringRef kCFDateFormatterTimeZone;           // CFTimeZone
extern const CFStringRef kCFDateFormatterCalendarName;       // CFString; read only
extern const CFStringRef kCFDateFormatterDefaultFormat;      // CFString; read only
extern const CFStringRef kCFDateFormatterTwoDigitStartDate;  // CFDate
extern const CFStringRef kCFDateFormatterDefaultDate;        // CFDate: what a text leaves out
extern const CFStringRef kCFDateFormatterEraSymbols;         // CFArrays of CFString
extern const CFStringRef kCFDateFormatterMonthSymbols;
extern const CFStringRef kCFDateFormatterShortMonthSymbols;
extern const CFStringRef kCFDateFormatterWeekdaySymbols;  // Sunday first
extern const CFStringRef kCFDateFormatterShortWeekdaySymbols;
extern const CFStringRef kCFDateFormatterAMSymbol;  // CFString
extern const CFStringRef kCFDateFormatterPMSymbol;  // CFString

PLATFORM_DECLARATIONS_END

#endif
