// Test support: PDF files made to measure, and one that takes long to work on, though it is not
// large.
#pragma once

#include <QByteArray>
#include <QList>

namespace labelcut::test {

/// So many that work on them takes several seconds anywhere.
inline constexpr int kManyPages = 60'000;

/// A PDF file of these objects, numbered from 1; the first is the catalog.
inline QByteArray pdfOf(const QList<QByteArray>& objects) {
    QByteArray pdf = "%PDF-1.6\n";
    QByteArray table;
    int number = 0;
    for (const QByteArray& object : objects) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(number + 1);
    const QByteArray begin = QByteArray::number(pdf.size());
    return pdf + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer\n<< /Size " +
           count + " /Root 1 0 R >>\nstartxref\n" + begin + "\n%%EOF\n";
}

/// A content stream.
inline QByteArray contentStream(const QByteArray& content) {
    return "<< /Length " + QByteArray::number(content.size()) + " >>\nstream\n" + content +
           "\nendstream";
}

/// A PDF of one page. @param attributes  of the page's dictionary, its boxes among them.
inline QByteArray pdfOfPage(const QByteArray& attributes, const QByteArray& content) {
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                  "<< /Type /Page /Parent 2 0 R /Contents 4 0 R " + attributes + " >>",
                  contentStream(content)});
}

/// A PDF of one page, whose content is compressed.
inline QByteArray pdfOfPacked(const QByteArray& content) {
    constexpr int kFastest = 1;
    constexpr int kCount = 4; // in front of zlib's own bytes
    const QByteArray packed = qCompress(content, kFastest).sliced(kCount);
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                  "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 90 90] >>",
                  "<< /Filter /FlateDecode /Length " + QByteArray::number(packed.size()) +
                      " >>\nstream\n" + packed + "\nendstream"});
}

/// A PDF of so many pages of A4, each of which has to be laid out for a label.
inline QByteArray pdfOfPages(int pages) {
    constexpr int kFirstPage = 4;
    QByteArray kids;
    for (int page = 0; page < pages; ++page)
        kids += QByteArray::number(kFirstPage + page) + " 0 R ";
    QList<QByteArray> objects{"<< /Type /Catalog /Pages 2 0 R >>",
                              "<< /Type /Pages /Kids [" + kids + "] /Count " +
                                  QByteArray::number(pages) + " >>",
                              contentStream("9 9 20 20 re f")};
    objects.append(QList<QByteArray>(
        pages, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 3 0 R >>"));
    return pdfOf(objects);
}

} // namespace labelcut::test
