#include "mail/window/bars/code_dialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr QSize kCodeSize(620, 440);

QString WrongWords(const QStringList& labels) {
  QStringList sentences;
  for (const QString& label : labels) {
    sentences.append(label.isEmpty() ? Ui::tr("文字コードの指定がありません。")
                                     : Ui::tr("メッセージの指定「%1」では読めない文字があります。")
                                           .arg(ShownText(label, kMostInTitle)));
  }
  return sentences.join(u'\n');
}

class CodeDialog : public QDialog {
 public:
  CodeDialog(QWidget* parent, const std::vector<CodeOffer>& offers, const QStringList& wrongLabels)
      : QDialog(parent), list_(new QTreeWidget), search_(new QLineEdit) {
    setObjectName(QStringLiteral("ReadAs"));
    setWindowTitle(Ui::tr("文字コードを選んで読む"));
    auto* layout = new QVBoxLayout(this);
    QLabel* wrong = PlainLabel(WrongWords(wrongLabels));
    wrong->setObjectName(QStringLiteral("lbWrong"));
    wrong->setVisible(!wrongLabels.isEmpty());
    layout->addWidget(wrong);
    layout->addWidget(
        PlainLabel(Ui::tr("この画面だけで使う文字コードを選んで下さい。上にあるものほど、"
                          "文章として読めそうです。")));
    search_->setPlaceholderText(Ui::tr("名前で絞り込む"));
    search_->setObjectName(QStringLiteral("txCode"));
    layout->addWidget(search_);
    list_->setObjectName(QStringLiteral("tvCodes"));
    list_->setHeaderLabels({Ui::tr("文字コード"), Ui::tr("この文字コードで読むと")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    layout->addWidget(list_, 1);
    auto* buttons = new QDialogButtonBox;
    ok_ = buttons->addButton(Ui::tr("読む"), QDialogButtonBox::AcceptRole);
    buttons->addButton(Ui::tr("キャンセル"), QDialogButtonBox::RejectRole);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list_, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(list_, &QTreeWidget::currentItemChanged, this,
            [this] { ok_->setEnabled(list_->currentItem() != nullptr); });
    connect(search_, &QLineEdit::textChanged, this, &CodeDialog::Narrow);
    Fill(offers);
    resize(kCodeSize);
    list_->setFocus();
  }

  // The place among the offers.
  int Chosen() const { return list_->currentItem()->data(0, Qt::UserRole).toInt(); }

 private:
  void Fill(const std::vector<CodeOffer>& offers) {
    int place = 0;
    for (const CodeOffer& offer : offers) {
      auto* item = new QTreeWidgetItem({offer.name, ShownText(offer.preview)});
      item->setData(0, Qt::UserRole, place++);
      if (!offer.isPlausible) {
        for (const int column : {0, 1}) {
          item->setForeground(column, palette().brush(QPalette::Disabled, QPalette::Text));
        }
      }
      list_->addTopLevelItem(item);
    }
    list_->resizeColumnToContents(0);
    list_->setCurrentItem(list_->topLevelItem(0));
  }

  // The current row is always one that can be seen, or none.
  void Narrow(const QString& text) {
    QTreeWidgetItem* first = nullptr;
    for (int i = 0; i < list_->topLevelItemCount(); ++i) {
      QTreeWidgetItem* item = list_->topLevelItem(i);
      item->setHidden(!item->text(0).contains(text.trimmed(), Qt::CaseInsensitive));
      if (first == nullptr && !item->isHidden()) first = item;
    }
    const QTreeWidgetItem* current = list_->currentItem();
    if (current == nullptr || current->isHidden()) list_->setCurrentItem(first);
    ok_->setEnabled(list_->currentItem() != nullptr);
  }

  QTreeWidget* list_;
  QLineEdit* search_;
  QPushButton* ok_ = nullptr;
};

}  // namespace

std::optional<CodeOffer> ChooseCode(QWidget* parent, const std::vector<CodeOffer>& offers,
                                    const QStringList& wrongLabels) {
  CodeDialog dialog(parent, offers, wrongLabels);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return offers[static_cast<size_t>(dialog.Chosen())];
}

}  // namespace vorn
