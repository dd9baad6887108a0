#pragma once
// What the host's geoprocessing framework asks of a tool factory: its names, its
// functions by name and an enumeration of their name objects. Only what the
// extension answers is declared here.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tess {

class IUID;

//! The name object of one geoprocessing function.
class IGPName {
public:
    virtual ~IGPName() = default;
    virtual std::string Name() const = 0;
    virtual std::string DisplayName() const = 0;
    virtual std::string Category() const = 0;
};

//! One geoprocessing function; the framework runs it by its name object.
class IGPFunction {
public:
    virtual ~IGPFunction() = default;
    virtual std::string Name() const = 0;
    virtual std::shared_ptr<IGPName> FullName() const = 0;
};

class IEnumGPName {
public:
    virtual ~IEnumGPName() = default;
    virtual void Reset() = 0;
    //! The next name, or null at the end.
    virtual std::shared_ptr<IGPName> Next() = 0;
};

//! The environments a factory declares; the extension declares none.
class IEnumGPEnvironment {
public:
    virtual ~IEnumGPEnvironment() = default;
};

class IGPFunctionFactory {
public:
    virtual ~IGPFunctionFactory() = default;
    virtual std::shared_ptr<IUID> CLSID() = 0;
    virtual std::string Name() = 0;
    virtual std::string Alias() = 0;
    virtual std::shared_ptr<IGPFunction> GetFunction(const std::string& name) = 0;
    virtual std::shared_ptr<IGPName> GetFunctionName(const std::string& name) = 0;
    virtual std::shared_ptr<IEnumGPName> GetFunctionNames() = 0;
    virtual std::shared_ptr<IEnumGPEnvironment> GetFunctionEnvironments() = 0;
};

//! A walk over a list of name objects, as GetFunctionNames hands it out.
class EnumGPName final : public IEnumGPName {
public:
    void Reset() override { next_ = 0; }
    std::shared_ptr<IGPName> Next() override { return next_ < names_.size() ? names_[next_++] : nullptr; }
    void Add(std::shared_ptr<IGPName> name) { names_.push_back(std::move(name)); }
    std::int32_t Count() const { return static_cast<std::int32_t>(names_.size()); }

private:
    std::vector<std::shared_ptr<IGPName>> names_;
    std::size_t next_ = 0;
};

} // namespace tess
