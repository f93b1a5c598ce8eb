// Test support: a PDF that takes long to work on, though it is not large.
#pragma once

#include <QByteArray>

namespace labelcut::test {

/// So many that work on them takes several seconds anywhere.
inline constexpr int kManyPages = 60'000;

/// A PDF of so many pages of A4, each of which has to be laid out for a label.
inline QByteArray pdfOfPages(int pages) {
    QByteArray pdf = "%PDF-1.4\n";
    QByteArray table;
    int number = 0;
    const auto add = [&](const QByteArray& object) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    };
    constexpr int kFirstPage = 4;
    QByteArray kids;
    for (int page = 0; page < pages; ++page)
        kids += QByteArray::number(kFirstPage + page) + " 0 R ";
    add("<< /Type /Catalog /Pages 2 0 R >>");
    add("<< /Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(pages) + " >>");
    add("<< /Length 14 >>\nstream\n9 9 20 20 re f\nendstream");
    for (int page = 0; page < pages; ++page)
        add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 3 0 R >>");
    const QByteArray count = QByteArray::number(number + 1);
    const QByteArray begin = QByteArray::number(pdf.size());
    return pdf + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer\n<< /Size " +
           count + " /Root 1 0 R >>\nstartxref\n" + begin + "\n%%EOF\n";
}

} // namespace labelcut::test
