/// Random walks through lists of a service whose files come and go: the list is built again in the
/// middle of the walk, or cannot be, beside a model of what is current then.
#include <random>

#include "browsing-fixture.hpp"
#include "browsing-model.hpp"

namespace {

constexpr int kWalks = 10;
constexpr int kSteps = 300;
constexpr gint kAlbum = 77;

/// The files that the service says it has, and those of them that it can give.
struct Files {
  gint counted = 0;
  gint given = 0;
};

class RandomResync : public BrowsingFixture, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    random_.seed(static_cast<unsigned>(GetParam()));
    serve();
  }

  gint pick(gint low, gint high) { return std::uniform_int_distribution<gint>(low, high)(random_); }

  /// The service answers by what files_ holds at the time.
  void serve() {
    fake::Platform &phone = fake::platform();
    phone.fm_svc_mb_get_all_sub_file_count = [this](const gchar *, gint, gint64, gint *count,
                                                    gint *) {
      *count = files_.counted;
      return counting_works_ ? TRUE : FALSE;
    };
    phone.fm_svc_mb_get_list = [this](const gchar *, gint, gint, gint64, gint, GList **list,
                                      gint first, gint last, gint *) {
      std::vector<MbItem> records;
      for (gint row = first; row <= std::min(last, files_.given - 1); ++row) {
        records.push_back(fake::make_item(id_of_row(row), "/" + std::to_string(row)));
      }
      *list = records.empty() ? nullptr : fake::record_list(records);
      return TRUE;
    };
    phone.fm_svc_mb_album_get_all_files_ex = [this](gint, gint, gint, FmFileList *list, gint *) {
      std::vector<gint64> ids;
      for (gint row = 0; row < files_.counted; ++row) ids.push_back(id_of_row(row));
      fake::fill_file_list(list, ids);
      return counting_works_ ? TRUE : FALSE;
    };
    phone.fm_svc_mb_get_record_by_index = [this](gint id, FmMediaRecord *record, gint *) {
      *record = {};
      return id >= id_of_row(0) && id < id_of_row(files_.given) ? TRUE : FALSE;
    };
    phone.fm_svc_mb_get_item_by_database_index = [](gint id, FmFileRecord *record, gint *) {
      *record = {};
      record->item = fake::make_item(id, "/" + std::to_string(id));
      return TRUE;
    };
  }
  /// Ids differ from build to build, so that a row of an old list cannot pass for a new one.
  [[nodiscard]] gint id_of_row(gint row) const { return 1000 * builds_ + row; }

  void change_files() {
    ++builds_;
    files_.counted = pick(0, 3) == 0 ? pick(0, 1) : pick(2, 12);
    files_.given = pick(0, 2) == 0 ? pick(0, files_.counted) : files_.counted;
    counting_works_ = pick(0, 5) != 0;
  }

  /// What the model has after a build with the files of the service.
  bool build_model() {
    const bool fails = !counting_works_ || files_.counted == 0;
    model_.rows.clear();
    model_.length = model_.count = fails ? 0 : files_.counted;
    for (gint row = 0; row < model_.length; ++row) {
      model_.rows.push_back(row < files_.given ? id_of_row(row) : kEmptyRow);
    }
    return !fails;
  }

  void open_all_files() {
    change_files();
    const bool built = build_model();
    if (built) model_.index = 0;

    EXPECT_EQ(pb_app_common_set_category(1, TRUE) != FALSE, built);
    category_ = 1;
  }
  void open_album() {
    change_files();
    const bool built = build_model();

    EXPECT_EQ(pb_app_common_build_item_list(3, kAlbum) != FALSE, built);
    category_ = 3;
  }
  /// Has every row made that can be, while the service still has its files.
  void make_rows() const {
    for (gint row = 0; row < model_.length; ++row) {
      pb_app_common_get_nth_item_from_list(hidden().item_list, row);
    }
  }
  void resync() {
    make_rows();
    // An album is found by the current item, before anything is built.
    const bool lost = category_ == 3 && model_.nth_from_current(0) == kEmptyRow;
    change_files();
    const bool built = !lost && build_model();
    if (lost) model_.count = 0;

    EXPECT_EQ(pb_app_common_resync_current_category() != FALSE, built);
  }

  void step() {
    const gint row = pick(-2, model_.length + 2);
    switch (pick(0, 8)) {
      case 0:
        return open_all_files();
      case 1:
        return open_album();
      case 2:
      case 3:
        return resync();
      case 4:
        EXPECT_EQ(pb_app_common_navigate_item_by_index(row) != FALSE, model_.go(row));
        return;
      case 5:
        EXPECT_EQ(pb_app_common_navigate_item_backward() != FALSE, model_.back());
        return;
      case 6:
        EXPECT_EQ(pb_app_common_navigate_item_forward() != FALSE, model_.forward());
        return;
      case 7:
        EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(row)),
                  model_.nth_from_current(row));
        return;
      default:
        EXPECT_EQ(pb_app_common_check_next_item_exist() != FALSE, model_.has_next());
        return;
    }
  }

  std::mt19937 random_;
  BrowsingModel model_;
  Files files_;
  bool counting_works_ = true;
  gint builds_ = 1;
  gint category_ = 1;
};

TEST_P(RandomResync, EndsWhereTheModelDoes) {
  open_all_files();
  for (int i = 0; i < kSteps && !HasFailure(); ++i) {
    SCOPED_TRACE("step " + std::to_string(i));
    step();
    take_glib_warnings();
    EXPECT_EQ(state()->item_index, model_.index);
    EXPECT_EQ(hidden().n_entire_items, model_.count);
    EXPECT_EQ(pb_item_list_get_length(hidden().item_list), model_.length);
    EXPECT_EQ(state()->category_type, category_);
    EXPECT_FALSE(hidden().resync);
  }
}

TEST_P(RandomResync, KeepsOneListAtATime) {
  open_all_files();
  for (int i = 0; i < kSteps; ++i) step();
  take_glib_warnings();

  EXPECT_EQ(pb_item_list_count, 1);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomResync, testing::Range(0, kWalks));

}  // namespace
