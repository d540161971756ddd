// The shadow map: positions of the casters as seen from the light.
void main() {
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
