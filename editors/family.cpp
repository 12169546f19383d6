#include "editors/family.h"

#include "shell/state.h"

namespace kw {

namespace {

const FamilyText kLimit{"LimitHead", "limitname", "limitnr", "select * from limitdef where limitnr like ",
                        "LimitHead", "LimitHead", "Limitdefinition exist ( ", "New / Copy Limitdefinition",
                        "Delete limitdefinition", "View limitdefinition", "newlim", "dellim", "Limitdef"};
// The row numbered 0 stands for an empty position of a configuration: a copy may start from it,
// nothing may go to it, and it can't be deleted.
const FamilyText kComponent{"loshead", "losname", "losnr", "select * from losdef where losnr like ",
                            "select * from losHead where losnr > 0 order by losname ",
                            "select * from losHead where losnr > 0 order by losname",
                            "losdefinition exist ( ", "New / Copy Loss/Gain Components",
                            "Delete Loss/Gain Components", "View definition", "newlos", "dellos", "losdef"};
const FamilyText kConfiguration{"config", "configname", "", "", "config", "config", "Configuration exist ( ",
                                "New / Copy Configuration", "Delete Configurations", "View definition",
                                "newconf", "delconf", "configdef"};

}  // namespace

const FamilyText &familyText(Family family)
{
    switch (family) {
    case Family::Limit: return kLimit;
    case Family::Component: return kComponent;
    case Family::Configuration: break;
    }
    return kConfiguration;
}

QString &currentName(Family family)
{
    switch (family) {
    case Family::Limit: return st.currentlimit;
    case Family::Component: return st.currentcomponent;
    case Family::Configuration: break;
    }
    return st.currentconfig;
}

QString nameLike(Family family, const QString &text)
{
    return QLatin1String(familyText(family).nameColumn) + QStringLiteral(" like '") + text + QLatin1Char('\'');
}

QString nameEquals(Family family, const QString &text)
{
    return QLatin1String(familyText(family).nameColumn) + QStringLiteral(" = '") + text + QLatin1Char('\'');
}

QString pointSource(Family family, const QString &number)
{
    return QLatin1String(familyText(family).pointQuery) + number + QStringLiteral(" order by frequency");
}

}  // namespace kw
