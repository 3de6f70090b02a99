// What a parameter owns beside its scale: a graph, an extension of the plug-in's making, and the list of those who
// are bound to it. Each says here what copying a parameter does to it.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <korvolib/alg/param_controller.h>
#include <korvolib/export.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// The points of a graph-valued parameter: as many as its capacity at most, so that filling it never allocates.
/// Copied point by point, with its capacity.
class KORVO_API KCParamGraph {
  public:
    KCParamGraph() = default;
    KCParamGraph(const KCParamGraph& other);
    KCParamGraph& operator=(const KCParamGraph& other);
    KCParamGraph(KCParamGraph&&) noexcept = default;
    KCParamGraph& operator=(KCParamGraph&&) noexcept = default;
    ~KCParamGraph() = default;

    size_t GetCapacity() const noexcept { return m_capacity; }
    const std::vector<KUPoint<double>>& GetPoints() const noexcept { return m_points; }
    /// Appends a point; false, and no change, when the graph is full.
    bool AddPoint(KUPoint<double> point) noexcept;
    /// Takes all points out; the capacity stays.
    void Clear() noexcept { m_points.clear(); }
    /// Sets the capacity; points beyond it go. The only operation that allocates. False, and no change, where the
    /// memory is not to be had.
    bool Resize(size_t capacity) noexcept;

  private:
    std::vector<KUPoint<double>> m_points;
    size_t m_capacity = 0;
};

/// Something that a plug-in or a later layer (a meter) hangs onto a parameter, which owns it. Copying the parameter
/// copies it by Clone.
class KORVO_API KCParamExtension {
  public:
    virtual ~KCParamExtension() = default;
    /// A copy, or null where there is none to be had.
    virtual std::unique_ptr<KCParamExtension> Clone() const = 0;

  protected:
    KCParamExtension() = default;
    KCParamExtension(const KCParamExtension&) = default;
    KCParamExtension& operator=(const KCParamExtension&) = default;
};

/// Owner of an extension that copies with its parameter.
class KORVO_API KCParamExtensionHolder {
  public:
    KCParamExtensionHolder() = default;
    KCParamExtensionHolder(const KCParamExtensionHolder& other) : m_extension(CloneOf(other)) {}
    KCParamExtensionHolder& operator=(const KCParamExtensionHolder& other) {
        m_extension = CloneOf(other);
        return *this;
    }
    KCParamExtensionHolder(KCParamExtensionHolder&&) noexcept = default;
    KCParamExtensionHolder& operator=(KCParamExtensionHolder&&) noexcept = default;
    ~KCParamExtensionHolder() = default;

    KCParamExtension* Get() const noexcept { return m_extension.get(); }
    void Set(std::unique_ptr<KCParamExtension> extension) noexcept { m_extension = std::move(extension); }

  private:
    static std::unique_ptr<KCParamExtension> CloneOf(const KCParamExtensionHolder& other) {
        return other.m_extension == nullptr ? nullptr : other.m_extension->Clone();
    }
    std::unique_ptr<KCParamExtension> m_extension;
};

/// Who wants to hear of a parameter, in the order in which they came. A binding belongs to one record: it moves
/// with it, a copy begins without any, and assigning to a record leaves those it has.
class KORVO_API KCParamBindings {
  public:
    KCParamBindings() = default;
    KCParamBindings(const KCParamBindings&) noexcept {}
    KCParamBindings& operator=(const KCParamBindings&) noexcept {
        return *this;
    } // NOLINT(bugprone-unhandled-self-assignment,cert-oop54-cpp)
    KCParamBindings(KCParamBindings&&) noexcept = default;
    KCParamBindings& operator=(KCParamBindings&&) noexcept = default;
    ~KCParamBindings() = default;

    /// False for null and for one that is there already.
    bool Add(KCParamController* controller);
    /// False for one that is not there.
    bool Remove(const KCParamController* controller) noexcept;
    bool Contains(const KCParamController* controller) const noexcept;
    void Clear() noexcept { m_controllers.clear(); }
    const std::vector<KCParamController*>& GetAll() const noexcept { return m_controllers; }

    /// Tells everyone once. They may add and remove themselves and others meanwhile: whoever is removed is told no
    /// more, whoever is added may have to wait for the next change.
    void Notify(size_t paramIndex) const noexcept {
        if (m_controllers.size() == 1) // as with most parameters
            m_controllers.front()->OnParamChanged(paramIndex);
        else if (!m_controllers.empty())
            NotifyAll(paramIndex);
    }

  private:
    void NotifyAll(size_t paramIndex) const noexcept;

    std::vector<KCParamController*> m_controllers;
};

} // namespace kvKorvoV12_9_0_320
