// The library used by a program that knows its types by name alone: it builds each of them, reads,
// writes and calls what they have, walks their collections, and takes them through their texts.
#include "Catalogue.h"

#include "lumo/ActivityLock.h"
#include "lumo/Reflect.h"
#include "state/DeviceBuilder.h"
#include "state/TypeNames.h"

#include <gtest/gtest.h>

namespace {

using Lumo::AttributeKind;
using Lumo::AttributeRecord;
using Lumo::GenericPtr;
using Lumo::InternalException;
using Lumo::OpCode;
using Lumo::RangeException;
using Lumo::TypeKind;
using Lumo::TypeRecord;
using Lumo::wrapAttrValue;

/// Handles to one device, for the arguments of constructors and the members of collections.
class Handles {
 public:
  Handles() {
    const auto& state = tables_.state;
    const auto& vrf = state.vrfs.front();
    add(vrf.routingConfig, vrf.routingStatus, vrf.routing6Status, vrf.kernelUnprogrammedRoute);
    add(state.forwardingStatus, state.forwarding6Status, state.unprogrammedRouteStatus,
        state.unprogrammedRoute6Status, state.vrfIdMap, state.allIntfConfig, state.ipConfig,
        state.ip6Config, state.ipStatus, state.ip6Status, state.arpVanta, state.nhgConfig,
        state.nhEntryStatus, state.nhgHwStatus, state.routingHardwareStatus,
        state.routing6HardwareStatus, state.tunnelFib, state.evpnVxlanTunnelTable,
        state.tunnelTableDir, state.srTePolicyStatus);
    add(Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId()),
        Lumo::newEntity<Routing::Route>(Routing::RouteKey()),
        Lumo::newEntity<Routing::RouteInput>(),
        Lumo::newEntity<Routing::NexthopGroup::NexthopGroupConfigEntry>());
  }

  /// The handle of that type, or null.
  GenericPtr of(const TypeRecord& type) const {
    for (const GenericPtr& handle : all_) {
      if (Lumo::isSameType(handle->type(), type)) return handle;
    }
    return {};
  }

 private:
  template <class... Entities>
  void add(const Lumo::Ptr<Entities>&... entities) {
    (all_.push_back(wrapAttrValue(entities)), ...);
  }

  state::DeviceBuilder tables_;
  std::vector<GenericPtr> all_;
};

/// A value that is not the default one, where the type is no notation of its own.
GenericPtr unusualValue(const TypeRecord& type) {
  if (type.form == Lumo::ValueForm::boolean) return wrapAttrValue(true);
  if (type.form == Lumo::ValueForm::real) return wrapAttrValue(0.5);
  if (type.form == Lumo::ValueForm::text) return type.fromText("x");
  if (type.fromInteger) return type.fromInteger({1});
  return {};
}

class ByNameTest : public testing::Test {
 protected:
  static GenericPtr build(const TypeRecord& type, const Handles& handles) {
    return type.genericIfFromCtorArgs(type, arguments(type, handles), false);
  }
  GenericPtr build(const TypeRecord& type) const { return build(type, handles_); }

  /// A usual value of the type, or a handle.
  static GenericPtr usual(const TypeRecord& type, const Handles& handles) {
    const GenericPtr handle = handles.of(type);
    return handle ? handle : build(type, handles);
  }
  GenericPtr usual(const TypeRecord& type) const { return usual(type, handles_); }

  /// Another value than the usual one, or another handle.
  GenericPtr unusual(const TypeRecord& type) const {
    const GenericPtr value = unusualValue(type);
    return value ? value : usual(type, others_);
  }

  static Lumo::GenericArguments arguments(const TypeRecord& type, const Handles& handles) {
    Lumo::GenericArguments all;
    for (const auto* at = type.constructorArguments; at->name; ++at) {
      all.push_back(usual(*at->type, handles));
    }
    return all;
  }
  Lumo::GenericArguments arguments(const TypeRecord& type) const {
    return arguments(type, handles_);
  }

  /// Calls `check` with each type of the catalogue.
  template <class Check>
  static void forEachType(Check check) {
    library();
    for (const auto& entry : catalogue()) {
      SCOPED_TRACE(entry.name);
      check(*Lumo::typeNode(entry.name), entry);
    }
  }
  /// Calls `check` with a new object of each type.
  template <class Check>
  void forEachObject(Check check) const {
    forEachType([&](const TypeRecord& type, const CatalogueEntry&) { check(build(type), type); });
  }
  /// Calls `check` with each attribute of a new object of each type.
  template <class Check>
  void forEachAttribute(Check check) const {
    forEachObject([&](const GenericPtr& object, const TypeRecord& type) {
      for (const auto& row : type.attributes) {
        SCOPED_TRACE(row.name);
        check(object, row);
      }
    });
  }

 private:
  Lumo::ActivityLockHold lock_;
  Handles handles_, others_;
};

template <class Result>
Result ask(const GenericPtr& object, const AttributeRecord* row, OpCode code,
           const GenericPtr& key = {}) {
  return Lumo::unwrap<Result>(Lumo::operate(*object, {row, code}, key));
}

// A caller by name who leaves an argument out gives the default of its type.
TEST_F(ByNameTest, AValueOfDefaultArgumentsIsTheDefaultValue) {
  const auto takesHandles = [](const TypeRecord& type) {
    const auto* at = type.constructorArguments;
    while (at->name && !at->type->isEntity()) ++at;
    return at->name != nullptr;
  };
  int checked = 0;
  forEachType([&](const TypeRecord& type, const CatalogueEntry&) {
    if (type.kind != TypeKind::value || takesHandles(type)) return;
    EXPECT_TRUE(ask<bool>(build(type), nullptr, OpCode::isDefault));
    ++checked;
  });
  EXPECT_GT(checked, 5);
}

// Each argument is made unusual once, so that one that goes astray is seen.
TEST_F(ByNameTest, AnObjectHasTheArgumentsOfItsConstructor) {
  forEachType([&](const TypeRecord& type, const CatalogueEntry&) {
    auto given = arguments(type);
    for (std::size_t i = 0; i < given.size(); ++i) {
      const GenericPtr usually = given[i];
      given[i] = unusual(*type.constructorArguments[i].type);
      const auto object = type.genericIfFromCtorArgs(type, given, false);
      ASSERT_TRUE(object);
      for (std::size_t k = 0; k < given.size(); ++k) {
        const char* const name = type.constructorArguments[k].name;
        EXPECT_EQ(Lumo::read(*object, name)->strRep(), given[k]->strRep()) << name;
      }
      given[i] = usually;
    }
    given.push_back(wrapAttrValue(true));
    EXPECT_THROW(type.genericIfFromCtorArgs(type, given, false), RangeException);
  });
}

TEST_F(ByNameTest, AnAttributeDoesWhatItsKindAllows) {
  forEachAttribute([](const GenericPtr& object, const AttributeRecord& row) {
    if (row.kind == AttributeKind::method || Lumo::isCollection(row.kind)) {
      EXPECT_THROW(Lumo::read(*object, row.name), InternalException);
      return;
    }
    const GenericPtr value = Lumo::read(*object, row.name);
    ASSERT_TRUE(value);
    EXPECT_STREQ(value->type().name, row.valueType->name);
    EXPECT_THROW(Lumo::call(*object, row.name, {}), InternalException);
    EXPECT_THROW(ask<std::uint32_t>(object, &row, OpCode::count), InternalException);
    if (row.kind == AttributeKind::plain ||
        row.kind == AttributeKind::writableConstructorArgument) {
      const GenericPtr other = unusualValue(*row.valueType);
      Lumo::write(*object, row.name, other ? other : value);
      EXPECT_EQ(Lumo::read(*object, row.name)->strRep(), (other ? other : value)->strRep());
    } else {
      EXPECT_THROW(Lumo::write(*object, row.name, value), InternalException);
    }
  });
}

TEST_F(ByNameTest, AMethodWithoutArgumentsIsCalled) {
  forEachAttribute([](const GenericPtr& object, const AttributeRecord& row) {
    if (row.kind != AttributeKind::method || row.arguments.front().name) return;
    const GenericPtr result = Lumo::call(*object, row.name, {});
    EXPECT_STREQ(result ? result->type().name : "void", row.valueType->name);
  });
}

TEST_F(ByNameTest, ACollectionIsFilledWalkedAndEmptied) {
  forEachAttribute([this](const GenericPtr& object, const AttributeRecord& row) {
    if (!Lumo::isCollection(row.kind)) {
      EXPECT_THROW(Lumo::Walk(object, row), RangeException);
      return;
    }
    const GenericPtr key = usual(*row.keyType), value = usual(*row.valueType);
    if (row.kind == AttributeKind::ordered) {
      EXPECT_EQ(ask<std::uint32_t>(object, &row, OpCode::secondCount), 1u);
    }
    EXPECT_FALSE(Lumo::Walk(object, row));
    EXPECT_FALSE(Lumo::Walk(object, row, &key));
    Lumo::writeMember(*object, row.name, key, value);
    EXPECT_EQ(ask<std::uint32_t>(object, &row, OpCode::count), 1u);
    EXPECT_TRUE(ask<bool>(object, &row, OpCode::has, key));
    EXPECT_EQ(Lumo::readMember(*object, row.name, key)->strRep(), value->strRep());
    EXPECT_TRUE(Lumo::Walk(object, row, &key));
    Lumo::Walk walk(object, row);
    ASSERT_TRUE(walk);
    EXPECT_STREQ(walk.key()->type().name, row.keyType->name);
    EXPECT_EQ(walk.key()->strRep(), key->strRep());
    EXPECT_STREQ(walk.value()->type().name, row.valueType->name);
    EXPECT_EQ(walk.value()->strRep(), value->strRep());
    walk.del();
    walk.next();
    EXPECT_FALSE(walk);
    EXPECT_EQ(ask<std::uint32_t>(object, &row, OpCode::count), 0u);
  });
}

TEST_F(ByNameTest, AnObjectThatLivesElsewhereIsWrappedAndProtected) {
  forEachObject([](const GenericPtr& object, const TypeRecord& type) {
    void* const address = object->voidPtrIs(type);
    const auto constant = type.FromVoidPointer(type, address, true);
    EXPECT_EQ(constant->voidPtrIs(type), address);
    EXPECT_THROW(constant->voidPtrIs(Lumo::typeOf<Kesh::Prefix>()), RangeException);
    for (const auto& row : type.attributes) {
      if (row.kind != AttributeKind::plain) continue;
      EXPECT_THROW(Lumo::write(*constant, row.name, Lumo::read(*object, row.name)),
                   InternalException);
    }
  });
}

TEST_F(ByNameTest, TwoTypesHaveAHash) {
  forEachObject([](const GenericPtr& object, const TypeRecord& type) {
    if (const auto* const row = type.attribute("hash")) {
      const auto hash = row->kind == AttributeKind::method ? Lumo::call(*object, "hash", {})
                                                           : Lumo::read(*object, "hash");
      EXPECT_EQ(object->hash(), Lumo::unwrap<std::uint32_t>(hash));
    } else {
      EXPECT_THROW(object->hash(), InternalException);
    }
  });
}

TEST_F(ByNameTest, AnEntityReadsNoValuesText) {
  forEachType([](const TypeRecord& type, const CatalogueEntry& entry) {
    if (entry.text != "none") return;
    const Lumo::String text = "Value('" + entry.name + "', ** {})";
    EXPECT_THROW(type.FromStrRep(type, text, false), RangeException);
  });
}

} // namespace
