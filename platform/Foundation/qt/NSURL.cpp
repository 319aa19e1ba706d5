// QUrl parses, joins and escapes URLs; an NSURL stores the finished string.

#include <Foundation/NSURL.h>

#include "Foundation/qt/QtConversions.h"

#include <QDir>
#include <QUrl>

namespace {

QUrl parsed(const NSString& absoluteString)
{
    return QUrl(toQString(absoluteString), QUrl::StrictMode);
}

NSString encoded(const QUrl& url)
{
    return fromQString(url.toString(QUrl::FullyEncoded));
}

} // namespace

NSURL::NSURL(NSString absoluteString)
    : _absoluteString(std::move(absoluteString))
{
}

NSURL::~NSURL() = default;

RetainPtr<NSURL> NSURL::fileURLWithPath(const NSString& path)
{
    if (path.length() == 0)
        return nullptr;
    const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(toQString(path)));
    return adopt(new NSURL(encoded(QUrl::fromLocalFile(absolute))));
}

RetainPtr<NSURL> NSURL::URLWithString(const NSString& string)
{
    const QUrl url = parsed(string);
    return url.isValid() && !url.isEmpty() ? adopt(new NSURL(encoded(url))) : nullptr;
}

NSString NSURL::absoluteString() const
{
    return _absoluteString;
}

NSString NSURL::scheme() const
{
    const QString scheme = parsed(_absoluteString).scheme();
    return scheme.isEmpty() ? NSString() : fromQString(scheme);
}

NSString NSURL::path() const
{
    QString path = parsed(_absoluteString).path(QUrl::FullyDecoded);
    if (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path.isNull() ? NSString("") : fromQString(path);
}

bool NSURL::isFileURL() const
{
    return parsed(_absoluteString).isLocalFile();
}

NSString NSURL::lastPathComponent() const
{
    return path().lastPathComponent();
}

NSString NSURL::pathExtension() const
{
    return path().pathExtension();
}

RetainPtr<NSURL> NSURL::URLByAppendingPathComponent(const NSString& component) const
{
    QUrl url = parsed(_absoluteString);
    QString longer = toQString(path().stringByAppendingPathComponent(component));
    if (!url.authority().isEmpty() && !longer.isEmpty() && !longer.startsWith(u'/'))
        longer.prepend(u'/'); // the host alone had no path yet
    url.setPath(longer, QUrl::DecodedMode);
    return url.isValid() ? adopt(new NSURL(encoded(url))) : nullptr;
}

bool NSURL::isEqual(const NSObject* other) const
{
    const auto* url = dynamic_cast<const NSURL*>(other);
    return url && url->_absoluteString == _absoluteString;
}

NSUInteger NSURL::hash() const
{
    return _absoluteString.hash();
}

NSString NSURL::description() const
{
    return _absoluteString;
}
