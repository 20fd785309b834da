// Makes the mesh files that the corpus of damaged files begins with: a meshed box with named groups, in every mesh
// format, as another program writes them. Usage: make_meshes FOLDER

#include <gmsh.h>

#include <string>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string folder = argv[1];
  gmsh::initialize(0, nullptr, false);
  gmsh::option::setNumber("General.Terminal", 0);
  gmsh::model::add("box");
  gmsh::model::occ::addBox(0, 0, 0, 3, 2, 1, 1);
  gmsh::model::occ::synchronize();
  gmsh::model::setPhysicalName(3, gmsh::model::addPhysicalGroup(3, {1}), "Body");
  gmsh::model::setPhysicalName(2, gmsh::model::addPhysicalGroup(2, {1, 2}), "Ends");
  gmsh::option::setNumber("Mesh.MeshSizeMax", 1);
  gmsh::model::mesh::generate(3);
  for (const char* name : {"box.msh", "box.unv", "box.bdf", "box.stl", "box.inp"}) {
    gmsh::write(folder + "/" + name);
  }
  gmsh::option::setNumber("Mesh.MshFileVersion", 2.2);
  gmsh::write(folder + "/box22.msh");
  gmsh::option::setNumber("Mesh.Binary", 1);
  gmsh::write(folder + "/box22_binary.msh");
  gmsh::write(folder + "/box_binary.stl");
  gmsh::option::setNumber("Mesh.MshFileVersion", 4.1);
  gmsh::write(folder + "/box_binary.msh");
  gmsh::finalize();
  return 0;
}
