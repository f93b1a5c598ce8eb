// Plug-in frame: what is loaded in the printer, as far as the print job tells it.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include <cstdint>
#include <optional>

#include "platform/printing/print_objects.h"
#include "platform/printing/print_ticket.h"

namespace labelcut {

/// Inches in a millimetre. The factor is rounded: every length here is converted with it alone,
/// so that lengths agree to the last digit wherever they are compared. Deliberately not 1/25.4.
inline constexpr double kInchesPerMillimetre = 0.0393701;

struct TapeInfo {
    /// The paper's length in millimetres; 100 when it could not be read.
    double height = 100.0;
    /// 1 when the page format's paper is one of the PPD's and its name begins "DC" or "AV".
    std::int32_t tapeState = 0;
    /// The PPD paper name, from the page format or else from the ticket.
    std::optional<QString> paperName;
};

/// First and last page of a job.
struct FirstAndLastPage {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

/// Whether a PPD paper name stands for a medium of fixed length: it begins "DC" or "AV".
bool isFixedLengthPaper(const char* name);

/// Reads the tape from the page format and, for the name only, from the ticket.
/// Any argument but `info` may be null. `info` is reset first and stays as far as it was filled.
/// @return noErr, or the printing framework's status.
OSStatus GetTapeInfo(const PMPrintSession* session, const PMPrintSettings* settings,
                     const PMPageFormat* pageFormat, const ppd_file_t* ppd, TapeInfo* info);
/// Reads the paper name from the ticket in the settings. @return noErr always.
OSStatus GetTapeInfo2(const void* ignored, const PMPrintSettings* settings, TapeInfo* info);
/// A number that was stored in the session: of an integer the lower 32 bits, of a fraction its
/// whole part. Data that is no number leaves `number` alone.
/// @return noErr, or kPMSessionDataNotFound when there is nothing under the key.
OSStatus GetTicketFromSession(const PMPrintSession* session, const QString& key,
                              std::int32_t* number);
/// Reads the page range and writes it back unlocked.
OSStatus GetTapeInfo3(PMPrintSettings* settings, FirstAndLastPage* pages);

/// Rounds half away from zero; what does not fit, or is no number, saturates or gives 0.
long RoundDouble(double x);
double MiriToInch(double millimetres);
double InchToMiri(double inches);

} // namespace labelcut
