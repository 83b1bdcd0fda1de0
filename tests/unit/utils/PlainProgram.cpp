// A program that is read, not run.
int main()
{
    return 0;
}
