// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/OmeXml.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace BufferApi::Formats
{

namespace
{

const QString omeNamespace = QStringLiteral("http://www.openmicroscopy.org/Schemas/OME/2016-06");
const QString recordNamespace = QStringLiteral("urn:dataobjects:frame-record:1");
const QString recordElement = QStringLiteral("FrameRecord");

struct Length
{
    const char16_t* unit;
    /// The name that the schema gives it.
    const char16_t* ome;
    double metres;
};

constexpr Length lengths[] = {{u"m", u"m", 1},           {u"mm", u"mm", 1e-3},     {u"µm", u"µm", 1e-6},
                              {u"\u03BCm", u"µm", 1e-6}, {u"um", u"µm", 1e-6},     {u"nm", u"nm", 1e-9},
                              {u"cm", u"cm", 1e-2},      {u"dm", u"dm", 1e-1},     {u"km", u"km", 1e3},
                              {u"in", u"in", 0.0254},    {u"inch", u"in", 0.0254}, {u"ft", u"ft", 0.3048}};

/// The length that a scale of an axis measures in, if it tells the size of a pixel.
const Length* lengthOf(const Zt::LinearScale& scale)
{
    const QString unit = scale.getUnit();
    const auto* found = std::find_if(std::begin(lengths), std::end(lengths), [&unit](const Length& length) {
        return unit == QString::fromUtf16(length.unit);
    });
    const bool isSize = std::isnormal(scale.getFactor());
    return found != std::end(lengths) && isSize ? found : nullptr;
}

QString typeName(E_DataType type)
{
    switch (type) {
    case DT_WORD:
        return QStringLiteral("uint16");
    case DT_INT32:
        return QStringLiteral("int32");
    case DT_UINT32:
        return QStringLiteral("uint32");
    case DT_FLOAT:
        return QStringLiteral("float");
    case DT_DOUBLE:
        return QStringLiteral("double");
    default:
        return QStringLiteral("uint8");
    }
}

/// What XML can hold of a text that is for people.
QString printable(const QString& text)
{
    QString result;
    for (const QChar c : text) {
        if (c.isPrint() && !c.isSurrogate()) {
            result += c;
        }
    }
    return result;
}

class OmeWriter
{
public:
    [[nodiscard]] QByteArray write(const std::vector<OmeImage>& images, const QString& name,
                                   const QByteArray& record);

private:
    void attribute(const char* name, const QString& value)
    {
        m_xml.writeAttribute(QLatin1String(name), value);
    }
    void attribute(const char* name, unsigned int value) { attribute(name, QString::number(value)); }
    void writeImage(const OmeImage& image, unsigned int index, const QString& name);
    void writeSize(const char* axis, const Zt::LinearScale& scale);
    void writeRecord(const QByteArray& record);

    QByteArray m_bytes;
    QXmlStreamWriter m_xml{&m_bytes};
};

QByteArray OmeWriter::write(const std::vector<OmeImage>& images, const QString& name,
                            const QByteArray& record)
{
    m_xml.writeStartDocument();
    m_xml.writeStartElement(QStringLiteral("OME"));
    m_xml.writeDefaultNamespace(omeNamespace);
    attribute("xmlns:xsi", QStringLiteral("http://www.w3.org/2001/XMLSchema-instance"));
    attribute("xsi:schemaLocation",
              omeNamespace + QLatin1Char(' ') + omeNamespace + QStringLiteral("/ome.xsd"));
    attribute("Creator", QStringLiteral("DataObjects"));
    for (unsigned int i = 0; i < images.size(); ++i) {
        writeImage(images[i], i, name);
    }
    writeRecord(record);
    m_xml.writeEndDocument();
    return m_bytes;
}

void OmeWriter::writeImage(const OmeImage& image, unsigned int index, const QString& name)
{
    const bool isRgb = image.type == DT_RGB;
    m_xml.writeStartElement(QStringLiteral("Image"));
    attribute("ID", QStringLiteral("Image:%1").arg(index));
    attribute("Name", printable(name));
    m_xml.writeStartElement(QStringLiteral("Pixels"));
    attribute("ID", QStringLiteral("Pixels:%1").arg(index));
    attribute("DimensionOrder", QStringLiteral("XYCZT"));
    attribute("Type", typeName(image.type));
    attribute("SizeX", image.width);
    attribute("SizeY", image.height);
    attribute("SizeC", isRgb ? 3U : 1U);
    attribute("SizeZ", image.depth);
    attribute("SizeT", image.pages / image.depth);
    attribute("Interleaved", isRgb ? QStringLiteral("true") : QStringLiteral("false"));
    writeSize("X", image.scaleX);
    writeSize("Y", image.scaleY);
    writeSize("Z", image.scaleZ);
    m_xml.writeEmptyElement(QStringLiteral("Channel"));
    attribute("ID", QStringLiteral("Channel:%1:0").arg(index));
    attribute("SamplesPerPixel", isRgb ? 3U : 1U);
    m_xml.writeEmptyElement(QStringLiteral("TiffData"));
    attribute("IFD", image.firstPage);
    attribute("PlaneCount", image.pages);
    m_xml.writeEndElement();
    m_xml.writeEmptyElement(QStringLiteral("AnnotationRef"));
    attribute("ID", QStringLiteral("Annotation:0"));
    m_xml.writeEndElement();
}

void OmeWriter::writeSize(const char* axis, const Zt::LinearScale& scale)
{
    if (const Length* length = lengthOf(scale)) {
        const QByteArray name = QByteArray("PhysicalSize") + axis;
        // Sizes are positive; an axis that points the other way is told by our own record.
        attribute(name.constData(),
                  QString::number(std::abs(scale.getFactor()), 'g', QLocale::FloatingPointShortest));
        attribute((name + "Unit").constData(), QString::fromUtf16(length->ome));
    }
}

void OmeWriter::writeRecord(const QByteArray& record)
{
    m_xml.writeStartElement(QStringLiteral("StructuredAnnotations"));
    m_xml.writeStartElement(QStringLiteral("XMLAnnotation"));
    attribute("ID", QStringLiteral("Annotation:0"));
    attribute("Namespace", recordNamespace);
    m_xml.writeStartElement(QStringLiteral("Value"));
    m_xml.writeStartElement(recordElement);
    m_xml.writeDefaultNamespace(recordNamespace);
    m_xml.writeCharacters(QString::fromLatin1(record));
}

/// Finds out which scales the images of a description give to which pages.
class OmeReader
{
public:
    OmeReader(const QByteArray& xml, std::size_t pages) : m_xml(xml), m_scales(pages) {}

    [[nodiscard]] std::vector<std::shared_ptr<const OmeScales>> read();

private:
    void readPixels();
    void readPages(const std::shared_ptr<const OmeScales>& scales);
    void set(const std::shared_ptr<const OmeScales>& scales, unsigned long long first,
             unsigned long long count);
    [[nodiscard]] std::optional<Zt::LinearScale> scale(const char* axis, Zt::ScalePreset preset) const;
    [[nodiscard]] QString attribute(const QByteArray& name) const
    {
        return m_xml.attributes().value(QLatin1String(name)).toString();
    }
    [[nodiscard]] bool isAt(const char* element) const { return m_xml.name() == QLatin1String(element); }

    QXmlStreamReader m_xml;
    /// Of this file, among several that the description may be about.
    QString m_uuid;
    std::vector<std::shared_ptr<const OmeScales>> m_scales;
};

std::vector<std::shared_ptr<const OmeScales>> OmeReader::read()
{
    while (!m_xml.atEnd()) {
        if (m_xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (isAt("OME")) {
            m_uuid = attribute("UUID");
        } else if (isAt("Pixels")) {
            readPixels();
        }
    }
    // Half a text may lack what it would have said of later pages.
    if (m_xml.hasError()) {
        m_scales.assign(m_scales.size(), nullptr);
    }
    return std::move(m_scales);
}

void OmeReader::readPixels()
{
    const auto scales = std::make_shared<const OmeScales>(OmeScales{
        scale("X", Zt::ScalePreset::X), scale("Y", Zt::ScalePreset::Y), scale("Z", Zt::ScalePreset::Z)});
    bool areListed = false;
    while (m_xml.readNextStartElement()) {
        if (isAt("TiffData")) {
            areListed = true;
            readPages(scales);
        } else {
            m_xml.skipCurrentElement();
        }
    }
    if (!areListed) {
        set(scales, 0, m_scales.size());
    }
}

void OmeReader::readPages(const std::shared_ptr<const OmeScales>& scales)
{
    const QString first = attribute("IFD");
    const QString count = attribute("PlaneCount");
    bool isHere = true;
    while (m_xml.readNextStartElement()) {
        if (isAt("UUID")) {
            const QString uuid = m_xml.readElementText();
            isHere = m_uuid.isEmpty() || uuid == m_uuid;
        } else {
            m_xml.skipCurrentElement();
        }
    }
    if (isHere) {
        const unsigned long long usual = first.isEmpty() ? m_scales.size() : 1;
        set(scales, first.toULongLong(), count.isEmpty() ? usual : count.toULongLong());
    }
}

void OmeReader::set(const std::shared_ptr<const OmeScales>& scales, unsigned long long first,
                    unsigned long long count)
{
    const unsigned long long begin = std::min<unsigned long long>(first, m_scales.size());
    const unsigned long long end = begin + std::min<unsigned long long>(count, m_scales.size() - begin);
    std::fill(m_scales.begin() + static_cast<std::ptrdiff_t>(begin),
              m_scales.begin() + static_cast<std::ptrdiff_t>(end), scales);
}

std::optional<Zt::LinearScale> OmeReader::scale(const char* axis, Zt::ScalePreset preset) const
{
    const QByteArray name = QByteArray("PhysicalSize") + axis;
    const double size = attribute(name).toDouble();
    const QString unit = m_xml.attributes().hasAttribute(QLatin1String(name + "Unit"))
                             ? attribute(name + "Unit")
                             : QStringLiteral("\u00B5m");
    const auto* found = std::find_if(std::begin(lengths), std::end(lengths), [&unit](const Length& length) {
        return unit == QString::fromUtf16(length.ome);
    });
    if (!std::isnormal(size) || size < 0 || found == std::end(lengths)) {
        return {};
    }
    return Zt::LinearScale(size, 0, unit, Zt::LinearScale(preset).getDescription());
}

QByteArray recordIn(const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == recordElement &&
            reader.namespaceUri() == recordNamespace) {
            return reader.readElementText().toLatin1();
        }
    }
    return {};
}

} // namespace

std::optional<double> metresPerPixel(const Zt::LinearScale& scale)
{
    const Length* length = lengthOf(scale);
    return length != nullptr ? std::optional(std::abs(scale.getFactor()) * length->metres) : std::nullopt;
}

QByteArray omeXml(const std::vector<OmeImage>& images, const QString& name, const QByteArray& record)
{
    const QByteArray utf8 = OmeWriter().write(images, name, record);
    // Whatever lies beyond ASCII stands in texts and attributes, where a character may be written by number.
    QByteArray ascii;
    ascii.reserve(utf8.size());
    for (const QChar c : QString::fromUtf8(utf8)) {
        if (c.unicode() < 0x80) {
            ascii += static_cast<char>(c.unicode());
        } else {
            ascii += "&#" + QByteArray::number(c.unicode()) + ';';
        }
    }
    return ascii;
}

std::vector<std::shared_ptr<const OmeScales>> scalesOfOmeXml(const QByteArray& xml, std::size_t pages)
{
    return xml.contains("openmicroscopy.org/Schemas/OME/")
               ? OmeReader(xml, pages).read()
               : std::vector<std::shared_ptr<const OmeScales>>(pages);
}

QByteArray recordOfOmeXml(const QByteArray& xml)
{
    // Its element names the namespace last, and reading starts there: the elements of many pages take long.
    const qsizetype found = xml.lastIndexOf(recordNamespace.toLatin1());
    if (found < 0) {
        return {};
    }
    const QByteArray record = recordIn(xml.sliced(std::max<qsizetype>(0, xml.lastIndexOf('<', found))));
    return record.isEmpty() ? recordIn(xml) : record;
}

} // namespace BufferApi::Formats
