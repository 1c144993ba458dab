#include "host/widgets/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>

#include "host/widgets/dark_style.h"

namespace kelvarin {

namespace {

constexpr char kSetting[] = "theme";
constexpr char kPortalService[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
constexpr char kPortalInterface[] = "org.freedesktop.portal.Settings";
constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kColorScheme[] = "color-scheme";

const QColor kAccent(0x2F, 0x6F, 0xDE);

QString nameOf(ThemeChoice choice) {
  switch (choice) {
    case ThemeChoice::light:
      return QStringLiteral("light");
    case ThemeChoice::dark:
      return QStringLiteral("dark");
    case ThemeChoice::system:
      break;
  }
  return QStringLiteral("system");
}

ThemeChoice rememberedChoice() {
  const QString name = QSettings().value(QLatin1String(kSetting)).toString();
  for (const ThemeChoice choice : {ThemeChoice::light, ThemeChoice::dark}) {
    if (name == nameOf(choice)) {
      return choice;
    }
  }
  return ThemeChoice::system;
}

// The colours that differ between light and dark; all others follow from them.
struct Shades {
  QColor window;
  QColor base;
  QColor alternate;
  QColor button;
  QColor text;
  QColor faint;  // placeholders and what is disabled
  QColor link;
};

QPalette paletteOf(const Shades& shades) {
  QPalette palette(shades.button, shades.window);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, shades.text);
    palette.setColor(QPalette::Disabled, role, shades.faint);
  }
  // The shadow of disabled texts, which would glow in the dark.
  palette.setColor(QPalette::Disabled, QPalette::Light, shades.window);
  palette.setColor(QPalette::Base, shades.base);
  palette.setColor(QPalette::AlternateBase, shades.alternate);
  palette.setColor(QPalette::ToolTipBase, shades.base);
  palette.setColor(QPalette::ToolTipText, shades.text);
  palette.setColor(QPalette::PlaceholderText, shades.faint);
  palette.setColor(QPalette::Highlight, kAccent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, kAccent);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, shades.faint);
  palette.setColor(QPalette::Link, shades.link);
  palette.setColor(QPalette::LinkVisited, shades.link);
  return palette;
}

QPalette lightPalette() {
  return paletteOf({QColor(0xF3, 0xF4, 0xF6), Qt::white, QColor(0xF3, 0xF5, 0xF8),
                    QColor(0xE9, 0xEB, 0xEF), QColor(0x1B, 0x1F, 0x24), QColor(0x60, 0x68, 0x72),
                    QColor(0x1F, 0x5B, 0xC4)});
}

QPalette darkPalette() {
  return paletteOf({QColor(0x25, 0x28, 0x2D), QColor(0x1B, 0x1D, 0x21), QColor(0x22, 0x25, 0x2A),
                    QColor(0x33, 0x37, 0x3D), QColor(0xE8, 0xEA, 0xED), QColor(0x9A, 0xA1, 0xAB),
                    QColor(0x8A, 0xB4, 0xF8)});
}

// Tool tips have a palette of their own.
void usePalette(const QPalette& palette) {
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
}

// Styles that draw controls of their own colours ignore a palette; Fusion obeys it.
void useLight() {
  if (QApplication::style()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  }
  usePalette(lightPalette());
}

void useDark() {
  if (qobject_cast<DarkStyle*>(QApplication::style()) == nullptr) {
    QApplication::setStyle(new DarkStyle);
  }
  usePalette(darkPalette());
}

}  // namespace

// The portal's answers arrive as messages, so this is the part with slots.
class Theme::Parts : public QObject {
  Q_OBJECT

 public:
  explicit Parts(Theme& theme)
      : m_theme(theme),
        m_choice(rememberedChoice()),
        m_desktopStyle(QApplication::style()->name()) {
    qApp->installEventFilter(this);
  }

  ThemeChoice choice() const { return m_choice; }

  void setChoice(ThemeChoice choice) {
    m_choice = choice;
    QSettings().setValue(QLatin1String(kSetting), nameOf(choice));
    apply();
  }

  void apply() {
    m_isApplying = true;
    if (m_choice == ThemeChoice::system) {
      askPortal();
      applySystem();
    } else if (m_choice == ThemeChoice::dark) {
      useDark();
    } else {
      useLight();
    }
    m_isApplying = false;
    emit m_theme.changed();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange && !m_isApplying) {
      emit m_theme.changed();
    }
    return QObject::eventFilter(watched, event);
  }

 private slots:
  void settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
    if (space == QLatin1String(kAppearance) && key == QLatin1String(kColorScheme)) {
      schemeArrived(value.variant().toUInt());
    }
  }

 private:
  void askPortal() {
    // Where there is no session bus, connecting to one would start it, and wait for it.
    if (m_isPortalAsked || !qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) {
      return;
    }
    m_isPortalAsked = true;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
      return;
    }
    // With the service's name, Qt would wait for the bus to say who owns it.
    bus.connect(QString(), QLatin1String(kPortalPath), QLatin1String(kPortalInterface),
                QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(QLatin1String(kPortalService), QLatin1String(kPortalPath),
                                       QLatin1String(kPortalInterface), QStringLiteral("Read"));
    question << QLatin1String(kAppearance) << QLatin1String(kColorScheme);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
      watcher->deleteLater();
      const QDBusPendingReply<QDBusVariant> reply = *watcher;
      if (reply.isValid()) {
        // The portal wraps the value in a second variant.
        const QVariant outer = reply.value().variant();
        const bool isWrapped = outer.canConvert<QDBusVariant>();
        schemeArrived(isWrapped ? outer.value<QDBusVariant>().variant().toUInt() : outer.toUInt());
      }
    });
  }

  void schemeArrived(unsigned scheme) {
    m_prefersDark = scheme == 1;
    if (m_choice == ThemeChoice::system) {
      apply();
    }
  }

  void applySystem() {
    const bool hasDesktopStyle =
        m_desktopStyle.compare(QLatin1String("windows"), Qt::CaseInsensitive) != 0;
    QStyle* style =
        QStyleFactory::create(hasDesktopStyle ? m_desktopStyle : QStringLiteral("Fusion"));
    if (style != nullptr && style->name() != QApplication::style()->name()) {
      QApplication::setStyle(style);
    } else {
      delete style;
    }
    usePalette(QPalette());
    if (m_prefersDark && !isDarkPalette(QApplication::palette())) {
      useDark();
    }
  }

  Theme& m_theme;
  ThemeChoice m_choice;
  QString m_desktopStyle;
  bool m_prefersDark = false;
  bool m_isPortalAsked = false;
  bool m_isApplying = false;
};

Theme::Theme(QObject* parent) : QObject(parent), m_parts(std::make_unique<Parts>(*this)) {
  m_parts->apply();
}

Theme::~Theme() = default;

ThemeChoice Theme::choice() const {
  return m_parts->choice();
}

void Theme::setChoice(ThemeChoice choice) {
  m_parts->setChoice(choice);
}

bool Theme::isDark() const {
  return isDarkPalette(QApplication::palette());
}

bool isDarkPalette(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

QColor severityColor(Severity severity, const QPalette& palette) {
  const bool isDark = isDarkPalette(palette);
  switch (severity) {
    case Severity::success:
      return isDark ? QColor(0x6F, 0xCF, 0x8A) : QColor(0x1B, 0x72, 0x38);
    case Severity::warning:
      return isDark ? QColor(0xF0, 0xB9, 0x4D) : QColor(0x8A, 0x5A, 0x00);
    case Severity::error:
      return isDark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB3, 0x1B, 0x1B);
    case Severity::information:
      break;
  }
  return isDark ? QColor(0x8A, 0xB4, 0xF8) : QColor(0x1F, 0x5B, 0xC4);
}

}  // namespace kelvarin

#include "theme.moc"
