// Our printing framework: the ticket that label jobs carry among their print settings.
#pragma once

namespace labelcut {

/// The ticket's print setting: bytes that hold an XML property list, a dictionary.
inline constexpr char kTicketKey[] = "org.labelcut.print.PrintSettingsTicket.SgE5";
/// In the ticket: the PPD paper name of the chosen medium, a text.
inline constexpr char kTicketPaperName[] = "SgPaperName2";

} // namespace labelcut
