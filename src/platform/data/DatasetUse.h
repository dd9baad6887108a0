#pragma once
// Datasets in use. A layer of an open map, a table of the map and an open
// cursor each hold the stored dataset they read; while any hold is alive the
// dataset cannot be deleted, so no tool in any host can overwrite the data it
// is reading or showing. Holds are seen within this process.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tess {

class IDataset;

//! Keeps a stored dataset from being deleted while it lives. A default hold holds nothing.
class DatasetHold {
public:
    DatasetHold() = default;
    ~DatasetHold();
    DatasetHold(DatasetHold&& other) noexcept;
    DatasetHold& operator=(DatasetHold&& other) noexcept;
    DatasetHold(const DatasetHold&) = delete;
    DatasetHold& operator=(const DatasetHold&) = delete;

    explicit operator bool() const { return id_ != 0; }
    //! Lets go early.
    void Release();

private:
    friend DatasetHold HoldDataset(const IDataset& dataset, std::function<std::string()> user);
    explicit DatasetHold(std::uint64_t id) : id_(id) {}
    std::uint64_t id_ = 0;
};

//! A hold on the stored table or feature class behind dataset. user names the holder in words
//! that follow "in use by", e.g. "the layer 'Parcels' of the map"; it is asked when a deletion is
//! refused, so it may follow a rename. An empty hold when dataset is not stored by this platform.
DatasetHold HoldDataset(const IDataset& dataset, std::function<std::string()> user);

//! The holders of the dataset now, in their own words; empty when nobody holds it.
std::vector<std::string> DatasetUsers(const IDataset& dataset);

} // namespace tess
