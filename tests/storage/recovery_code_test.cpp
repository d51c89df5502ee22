#include "storage/keys/recovery_code.h"

#include <gtest/gtest.h>

#include "storage/keys/code_file.h"
#include "support/fake_secrets.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

QString FullWidth(QString text) {
  for (QChar& c : text) {
    if (c != u'-') c = QChar(char16_t(c.unicode() + 0xFEE0));
  }
  return text.replace(u'-', u'　');
}

TEST(RecoveryCode, IsReadHoweverItIsTypedAndChecksItself) {
  QString code;
  while (!code.contains(u'0') || !code.contains(u'1')) code = RecoveryCode::Make();
  EXPECT_TRUE(
      QRegularExpression(QStringLiteral("^([0-9A-HJKMNP-TV-Z]{5}-){5}[0-9A-HJKMNP-TV-Z]{5}$"))
          .match(code)
          .hasMatch())
      << code.toStdString();
  EXPECT_NE(code, RecoveryCode::Make());
  QString dashes = code.toLower();
  for (const QString& typed :
       {code, code.toLower(), QString(code).remove(u'-'), FullWidth(code),
        FullWidth(code.toLower()), QStringLiteral(" ") + QString(code).replace(u'-', u' ') + u'\n',
        QStringLiteral("「") + code + QStringLiteral("」。\u200B"), dashes.replace(u'-', u'ー'),
        QString(code).replace(u'0', u'o').replace(u'1', u'l')}) {
    EXPECT_EQ(RecoveryCode::Read(typed), code) << typed.toStdString();
    EXPECT_FALSE(RecoveryCode::IsMistyped(typed));
  }
  for (qsizetype at = 0; at < code.size(); ++at) {
    QString wrong = code;
    if (wrong[at] == u'-') continue;
    wrong[at] = wrong[at] == u'7' ? u'8' : u'7';
    EXPECT_EQ(RecoveryCode::Read(wrong), QString()) << wrong.toStdString();
    EXPECT_TRUE(RecoveryCode::IsMistyped(wrong));
  }
  EXPECT_TRUE(RecoveryCode::IsMistyped(code.chopped(1)));
  for (const QString& password : {QString(), QStringLiteral("secret"), QStringLiteral("秘密"),
                                  QString(code).replace(0, 1, u'!')}) {
    EXPECT_EQ(RecoveryCode::Read(password), QString());
    EXPECT_FALSE(RecoveryCode::IsMistyped(password)) << password.toStdString();
  }
}

TEST(CodeFile, RemembersOneCodeAndLosesNone) {
  QTemporaryDir folder;
  const CodeFile file(folder.filePath(QStringLiteral("profile")), nullptr);
  EXPECT_EQ(file.Code(), QString());
  const QString code = file.CodeOrNew().ValueOr({});
  EXPECT_FALSE(code.isEmpty());
  EXPECT_EQ(file.CodeOrNew(), code);
  EXPECT_EQ(QFile::permissions(file.Path()) & ~(QFile::ReadUser | QFile::WriteUser),
            QFile::ReadOwner | QFile::WriteOwner);
  const QString other = RecoveryCode::Make();
  EXPECT_TRUE(file.Keep(other) && file.Keep(other));
  EXPECT_EQ(file.Code(), other);
  EXPECT_EQ(file.Others(), QStringList{code});
  for (const QByteArray& spoilt :
       {QByteArray(), QByteArray(4096, '\0'), code.toLatin1().chopped(2)}) {
    test::WriteFile(file.Path(), spoilt);
    EXPECT_EQ(file.Code(), QString());
  }
  EXPECT_NE(file.CodeOrNew().ValueOr(code), code);
  EXPECT_TRUE(file.Forget());
  EXPECT_FALSE(QFileInfo::exists(file.Path()));
  // What a folder that cannot be written to gives, for root as well.
  ASSERT_TRUE(QDir().mkpath(file.Path() + QStringLiteral(".new")));
  EXPECT_FALSE(file.CodeOrNew());
  EXPECT_FALSE(QFileInfo::exists(file.Path()));
}

TEST(CodeFile, LeavesTheCodeToADesktopThatKeepsIt) {
  QTemporaryDir folder;
  test::FakeSecrets secrets;
  const QString path = folder.filePath(QStringLiteral("profile"));
  const CodeFile file(path, &secrets);
  const QString code = file.CodeOrNew().ValueOr({});
  EXPECT_TRUE(file.NamesSecret());
  EXPECT_EQ(file.CodeOrNew(), code);
  EXPECT_EQ(secrets.kept.values(), QStringList{code});
  EXPECT_FALSE(test::ReadFile(file.Path()).contains(code.left(5).toLatin1()));
  for (const bool isAway : {false, true}) {
    secrets.refuses = true;
    const CodeFile away(path, isAway ? nullptr : &secrets);
    EXPECT_EQ(away.Code(), QString());
    EXPECT_FALSE(away.Keep(code)) << "it would lie in the folder";
    EXPECT_TRUE(away.NamesSecret());
  }
  secrets.refuses = false;
  const QString other = RecoveryCode::Make();
  EXPECT_TRUE(file.Keep(other));
  EXPECT_EQ(file.Code(), other);
  EXPECT_EQ(file.Others(), QStringList{code});
  EXPECT_TRUE(file.Forget());
  EXPECT_EQ(secrets.kept.size(), 2) << "copies of the folder still want them";
  // A profile that is made now has no other code than the one that can be kept.
  secrets.refuses = true;
  EXPECT_TRUE(file.CodeOrNew());
  EXPECT_FALSE(file.NamesSecret());
}

}  // namespace
}  // namespace vorn
