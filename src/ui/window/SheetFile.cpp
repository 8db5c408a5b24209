#include "ui/window/SheetFile.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QLocale>
#include <QPdfWriter>
#include <QTextDocument>

#include "core/Letters.h"
#include "core/files/AtomicFile.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kPageMargin = 12;  // mm

QByteArray pdf(const QString& title, const std::string& html) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&file);
        const bool letter = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
        writer.setPageSize(QPageSize(letter ? QPageSize::Letter : QPageSize::A4));
        writer.setPageMargins(QMarginsF(kPageMargin, kPageMargin, kPageMargin, kPageMargin),
                              QPageLayout::Millimeter);
        writer.setTitle(title);
        QTextDocument document;
        document.documentLayout()->setPaintDevice(&writer);
        document.setPageSize(writer.pageLayout().paintRectPixels(writer.resolution()).size());
        document.setHtml(toQt(html));
        document.print(&writer);
    }
    return file.data();
}

}  // namespace

bool saveSheet(const std::string& path, const SheetFacts& facts) {
    const std::string html = SheetHtml(facts);
    AtomicFile file(path);
    file.Write(SuffixOf(path) == ".pdf" ? pdf(toQt(facts.set), html).toStdString() : html);
    return file.Commit();
}

}  // namespace tarnwell
